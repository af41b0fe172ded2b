#include "platform/linux/RegularFile.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vistrel::platform::linux_desktop {
namespace {

class Descriptor {
 public:
  explicit Descriptor(const std::filesystem::path& path)
      : number_(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC)) {}
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

 private:
  const int number_;
};

}  // namespace

std::optional<std::string> contentsOfRegularFile(const std::filesystem::path& path,
                                                 std::size_t mostBytes) {
  const Descriptor file(path);
  if (!file.isRegularFile()) return std::nullopt;
  // The size that a file says it has is not asked: the system's own, below /proc, say none.
  std::string contents;
  std::array<char, 4096> part{};
  while (contents.size() <= mostBytes) {
    const auto taken = file.read(part.data(), part.size());
    if (taken < 0) return std::nullopt;
    if (taken == 0) return contents;
    contents.append(part.data(), static_cast<std::size_t>(taken));
  }
  return std::nullopt;
}

}  // namespace vistrel::platform::linux_desktop
