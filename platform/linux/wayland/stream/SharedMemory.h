#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace vistrel::platform::linux_desktop {

/// Memory that another process shares, mapped to be read. Any thread.
class SharedMemory {
 public:
  /// The first `bytes` bytes of the file; null where it has not that many. Null as well where it
  /// could be cut later (memfd_create(2), F_SEAL_SHRINK): touching what has been cut away ends a
  /// process.
  static std::shared_ptr<const SharedMemory> map(int descriptor, std::uint64_t bytes);
  SharedMemory(const SharedMemory&) = delete;
  SharedMemory& operator=(const SharedMemory&) = delete;
  ~SharedMemory();

  const std::uint8_t* bytes() const { return bytes_; }
  std::size_t size() const { return size_; }
  /// Of the file.
  int descriptor() const { return descriptor_; }

 private:
  SharedMemory(int descriptor, const std::uint8_t* bytes, std::size_t size)
      : descriptor_(descriptor), bytes_(bytes), size_(size) {}

  const int descriptor_;
  const std::uint8_t* const bytes_;
  const std::size_t size_;
};

}  // namespace vistrel::platform::linux_desktop
