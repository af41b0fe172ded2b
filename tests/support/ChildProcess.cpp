#include "tests/support/ChildProcess.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace vistrel::testbed {
namespace {

// A nameless file: unlike a pipe it never fills up, so nobody has to drain it.
FileDescriptor makeOutputFile(const char* name) {
  const int descriptor = ::memfd_create(name, MFD_CLOEXEC);
  if (descriptor < 0) {
    throw std::system_error(errno, std::generic_category(), "memfd_create");
  }
  ::fcntl(descriptor, F_SETFL, O_APPEND);
  return FileDescriptor(descriptor);
}

std::string contentsOf(const FileDescriptor& file) {
  std::string contents;
  std::array<char, 4096> chunk{};
  for (;;) {
    const ssize_t count =
        ::pread(file.get(), chunk.data(), chunk.size(), static_cast<off_t>(contents.size()));
    if (count <= 0) {
      return contents;
    }
    contents.append(chunk.data(), static_cast<std::size_t>(count));
  }
}

std::vector<char*> pointersTo(const std::vector<std::string>& strings) {
  std::vector<char*> pointers;
  pointers.reserve(strings.size() + 1);
  for (const std::string& string : strings) {
    pointers.push_back(const_cast<char*>(string.c_str()));
  }
  pointers.push_back(nullptr);
  return pointers;
}

// Between fork and exec, where only async-signal-safe calls are allowed.
[[noreturn]] void become(char* const* arguments, char* const* environment, int output, int error,
                         const std::vector<int>& inherited, pid_t parent) {
  constexpr int cannotExecute = 127;
  ::prctl(PR_SET_PDEATHSIG, SIGTERM);
  if (::getppid() != parent) {
    ::_exit(cannotExecute);
  }
  ::dup2(output, STDOUT_FILENO);
  ::dup2(error, STDERR_FILENO);
  for (const int descriptor : inherited) {
    ::fcntl(descriptor, F_SETFD, 0);
  }
  ::execvpe(arguments[0], arguments, environment);
  ::_exit(cannotExecute);
}

}  // namespace

ChildProcess::ChildProcess(const Command& command)
    : output_(makeOutputFile("stdout")), error_(makeOutputFile("stderr")) {
  const std::vector<char*> arguments = pointersTo(command.arguments);
  const std::vector<char*> environment = pointersTo(command.environment);
  const pid_t parent = ::getpid();
  pid_ = ::fork();
  if (pid_ < 0) {
    throw std::system_error(errno, std::generic_category(), "fork");
  }
  if (pid_ == 0) {
    become(arguments.data(), environment.data(), output_.get(), error_.get(), command.inherited,
           parent);
  }
}

ChildProcess::~ChildProcess() {
  constexpr std::chrono::seconds patience{5};
  sendSignal(SIGTERM);
  if (!waitForEnd(patience)) {
    sendSignal(SIGKILL);
    static_cast<void>(waitForEnd());
  }
}

std::optional<ChildProcess::Ending> ChildProcess::ending() {
  int status = 0;
  if (!ending_ && ::waitpid(pid_, &status, WNOHANG) == pid_) {
    ending_.emplace();
    if (WIFEXITED(status)) {
      ending_->exitStatus = WEXITSTATUS(status);
    } else {
      ending_->signal = WTERMSIG(status);
    }
  }
  return ending_;
}

std::optional<ChildProcess::Ending> ChildProcess::waitForEnd(std::chrono::milliseconds deadline) {
  static_cast<void>(eventually([this] { return ending().has_value(); }, deadline));
  return ending_;
}

void ChildProcess::sendSignal(int signal) {
  if (!ending()) {
    ::kill(pid_, signal);
  }
}

std::string ChildProcess::standardOutput() const { return contentsOf(output_); }

std::string ChildProcess::standardError() const { return contentsOf(error_); }

}  // namespace vistrel::testbed
