#include "platform/linux/x11/parking/Guard.h"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/linux/Companions.h"
#include "platform/linux/Trace.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// How a program starts that is to have nothing of this process but its environment.
class Detached {
 public:
  Detached() {
    posix_spawnattr_init(&attributes_);
    posix_spawn_file_actions_init(&files_);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes_, &signals);
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&attributes_, &signals);
    posix_spawnattr_setflags(&attributes_,
                             POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSID);
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
      posix_spawn_file_actions_addopen(&files_, descriptor, "/dev/null", O_RDWR, 0);
    }
    posix_spawn_file_actions_addchdir_np(&files_, "/");
    posix_spawn_file_actions_addclosefrom_np(&files_, STDERR_FILENO + 1);
  }
  Detached(const Detached&) = delete;
  Detached& operator=(const Detached&) = delete;
  ~Detached() {
    posix_spawn_file_actions_destroy(&files_);
    posix_spawnattr_destroy(&attributes_);
  }

  const posix_spawnattr_t* attributes() const { return &attributes_; }
  const posix_spawn_file_actions_t* files() const { return &files_; }

 private:
  posix_spawnattr_t attributes_{};
  posix_spawn_file_actions_t files_{};
};

}  // namespace

void startGuard(const OwnerId& owner) {
  auto path = companion("vistrel-guard", VISTREL_INSTALLED_GUARD).string();
  if (path.empty()) {
    return trace(TraceTopic::manager, [] { return "no guard of parked windows is installed"; });
  }
  auto window = std::to_string(owner.window);
  auto token = std::to_string(owner.token);
  const std::array<char*, 4> arguments{path.data(), window.data(), token.data(), nullptr};
  const Detached how;
  pid_t started = -1;
  if (posix_spawn(&started, path.c_str(), how.files(), how.attributes(), arguments.data(),
                  environ) != 0) {
    return trace(TraceTopic::manager, [] { return "the guard of parked windows does not start"; });
  }
  // It goes on as another process, which is nobody's child, and this one ends.
  waitpid(started, nullptr, 0);
}

}  // namespace vistrel::platform::linux_desktop
