#include "platform/linux/DetachedProgram.h"

#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vistrel::platform::linux_desktop {
namespace {

class Detached {
 public:
  explicit Detached(const std::vector<int>& descriptors) {
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
    const int end = firstHandedDescriptor + static_cast<int>(descriptors.size());
    for (const int descriptor : descriptors) {
      // From above the places, so that none takes another's before that is handed on.
      const int source = fcntl(descriptor, F_DUPFD_CLOEXEC, end);
      posix_spawn_file_actions_adddup2(&files_, source,
                                       firstHandedDescriptor + static_cast<int>(sources_.size()));
      sources_.push_back(source);
    }
    posix_spawn_file_actions_addchdir_np(&files_, "/");
    posix_spawn_file_actions_addclosefrom_np(&files_, end);
  }
  Detached(const Detached&) = delete;
  Detached& operator=(const Detached&) = delete;
  ~Detached() {
    posix_spawn_file_actions_destroy(&files_);
    posix_spawnattr_destroy(&attributes_);
    for (const int source : sources_) close(source);
  }

  const posix_spawnattr_t* attributes() const { return &attributes_; }
  const posix_spawn_file_actions_t* files() const { return &files_; }

 private:
  posix_spawnattr_t attributes_{};
  posix_spawn_file_actions_t files_{};
  std::vector<int> sources_;
};

}  // namespace

bool startDetached(const std::filesystem::path& program, std::vector<std::string> arguments,
                   const std::vector<int>& descriptors) {
  std::string path = program.string();
  std::vector<char*> texts{path.data()};
  for (std::string& each : arguments) texts.push_back(each.data());
  texts.push_back(nullptr);
  const Detached how(descriptors);
  pid_t started = -1;
  if (posix_spawn(&started, path.c_str(), how.files(), how.attributes(), texts.data(), environ) !=
      0) {
    return false;
  }
  // It goes on as another process, and this one ends.
  waitpid(started, nullptr, 0);
  return true;
}

}  // namespace vistrel::platform::linux_desktop
