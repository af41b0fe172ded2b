#pragma once

#include <filesystem>

namespace vistrel::testbed {

/// An empty directory of its own for one test, readable by this user alone, removed with everything
/// in it.
class TemporaryDirectory {
 public:
  /// Throws std::system_error when there is no place for one.
  TemporaryDirectory();
  ~TemporaryDirectory();
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace vistrel::testbed
