#include "platform/linux/RegularFile.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace vistrel::platform::linux_desktop {
namespace {

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (number_ >= 0) close(number_);
  }

  bool isRegularFile() const {
    struct stat status {};
    return number_ >= 0 && fstat(number_, &status) == 0 && S_ISREG(status.st_mode);
  }

  /// As read(2), which a signal does not end.
  ssize_t read(char* bytes, std::size_t count) const {
    ssize_t taken = 0;
    do {
      taken = ::read(number_, bytes, count);
    } while (taken < 0 && errno == EINTR);
    return taken;
  }

  /// Writes all of it, down to the disk.
  bool write(std::string_view bytes) const {
    while (!bytes.empty()) {
      const auto written = ::write(number_, bytes.data(), bytes.size());
      if (written < 0 && errno == EINTR) continue;
      if (written < 0) return false;
      bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return fsync(number_) == 0;
  }

  bool makeForItsOwnerAlone() const { return fchmod(number_, S_IRUSR | S_IWUSR) == 0; }

 private:
  const int number_;
};

/// Of a regular file what there is, but hardly more than `mostBytes` where it is longer than that.
std::optional<std::string> beginningOf(const std::filesystem::path& path, std::size_t mostBytes) {
  const Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (!file.isRegularFile()) return std::nullopt;
  // The size that a file says it has is not asked: the system's own, below /proc, say none.
  std::string contents;
  std::array<char, 4096> part{};
  while (contents.size() <= mostBytes) {
    const auto taken = file.read(part.data(), part.size());
    if (taken < 0) return std::nullopt;
    if (taken == 0) break;
    contents.append(part.data(), static_cast<std::size_t>(taken));
  }
  return contents;
}

/// Whether a file may be put at `path`.
bool mayBeReplaced(const std::string& path) {
  struct stat status {};
  if (lstat(path.c_str(), &status) != 0) return errno == ENOENT;
  if (S_ISLNK(status.st_mode)) return true;
  return S_ISREG(status.st_mode) && access(path.c_str(), W_OK) == 0;
}

/// Writes a file beside `path`; its name, empty where that fails.
std::string writtenBeside(const std::string& path, std::string_view contents) {
  std::string name = path + ".XXXXXX";
  const Descriptor file(mkostemp(name.data(), O_CLOEXEC));
  if (!file.isRegularFile()) return {};
  if (file.makeForItsOwnerAlone() && file.write(contents)) return name;
  unlink(name.c_str());
  return {};
}

}  // namespace

std::optional<std::string> contentsOfRegularFile(const std::filesystem::path& path,
                                                 std::size_t mostBytes) {
  auto contents = beginningOf(path, mostBytes);
  return contents && contents->size() <= mostBytes ? std::move(contents) : std::nullopt;
}

std::optional<std::string> linesOfRegularFile(const std::filesystem::path& path,
                                              std::size_t mostBytes) {
  auto contents = beginningOf(path, mostBytes);
  if (contents && contents->size() > mostBytes) {
    contents->resize(mostBytes);
    contents->resize(contents->rfind('\n') + 1);
  }
  return contents;
}

void replaceRegularFile(const std::filesystem::path& path, std::string_view contents) {
  if (!mayBeReplaced(path)) return;
  const std::string name = writtenBeside(path, contents);
  if (!name.empty() && std::rename(name.c_str(), path.c_str()) != 0) unlink(name.c_str());
}

}  // namespace vistrel::platform::linux_desktop
