#pragma once

#include <string>
#include <utility>

namespace vistrel::testbed {

/// Owns one open file descriptor, or none (-1).
class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
  ~FileDescriptor() { close(); }
  FileDescriptor(FileDescriptor&& other) noexcept
      : descriptor_(std::exchange(other.descriptor_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }

  int get() const { return descriptor_; }
  void close();

 private:
  int descriptor_ = -1;
};

/// The two ends of a pipe; neither is inherited by programs unless asked for.
struct Pipe {
  /// Throws std::system_error when there are no descriptors left.
  static Pipe open();

  FileDescriptor readEnd;
  FileDescriptor writeEnd;
};

/// The first line that a program writes into a pipe, once it is ready; empty when it ended first.
std::string readLine(const FileDescriptor& descriptor);

}  // namespace vistrel::testbed
