#include "platform/linux/StandardError.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace vistrel::platform::linux_desktop {

namespace {

/// Without it, writing to a pipe that nobody reads would end the process.
class BrokenPipesIgnored {
 public:
  BrokenPipesIgnored() = default;
  BrokenPipesIgnored(const BrokenPipesIgnored&) = delete;
  BrokenPipesIgnored& operator=(const BrokenPipesIgnored&) = delete;
  ~BrokenPipesIgnored() { std::signal(SIGPIPE, former_); }

 private:
  decltype(SIG_IGN) former_ = std::signal(SIGPIPE, SIG_IGN);
};

bool waitUntilWritable(int descriptor) {
  pollfd waited{.fd = descriptor, .events = POLLOUT, .revents = 0};
  return ::poll(&waited, 1, -1) > 0 || errno == EINTR;
}

}  // namespace

void openMissingStandardStreams() {
  for (const int descriptor : std::array{STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    // The lowest free number is taken, which is this one.
    if (::fcntl(descriptor, F_GETFD) < 0) ::open("/dev/null", O_RDWR);
  }
}

void writeWhole(int descriptor, std::string_view text) {
  const BrokenPipesIgnored brokenPipesIgnored;
  while (!text.empty()) {
    const ssize_t written = ::write(descriptor, text.data(), text.size());
    if (written > 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
      continue;
    }
    if (written == 0) return;
    const bool goesOn = errno == EINTR || (errno == EAGAIN && waitUntilWritable(descriptor));
    if (!goesOn) return;
  }
}

void StandardError::write(const std::string& text) { writeWhole(STDERR_FILENO, text); }

}  // namespace vistrel::platform::linux_desktop
