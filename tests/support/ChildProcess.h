#pragma once

#include <chrono>
#include <optional>
#include <stdexcept>
#include <string>
#include <sys/types.h>
#include <vector>

#include "tests/support/FileDescriptor.h"
#include "tests/support/Poll.h"

namespace vistrel::testbed {

/// A program started by a test. It ends with the test: when this object goes, and also when the
/// test is killed before that (PR_SET_PDEATHSIG, which follows the *thread* that started it: start
/// children on a thread that lives as long as they do).
class ChildProcess {
 public:
  struct Command {
    /// The program, found on PATH unless it holds a slash, and its arguments.
    std::vector<std::string> arguments;
    /// NAME=value, the whole environment.
    std::vector<std::string> environment = {};
    /// Descriptors of this process that the program gets under the same numbers.
    std::vector<int> inherited = {};
  };
  /// How a process ended: by exit with a status, or by a signal.
  struct Ending {
    std::optional<int> exitStatus;
    std::optional<int> signal;
  };

  /// Throws std::system_error when no process can be made; a program that cannot be executed ends
  /// with exit status 127.
  explicit ChildProcess(const Command& command);
  /// SIGTERM, and SIGKILL when that does not help.
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  pid_t pid() const { return pid_; }
  /// How it ended, if it has.
  std::optional<Ending> ending();
  /// Waits for its end; none when it still runs at the deadline.
  std::optional<Ending> waitForEnd(std::chrono::milliseconds deadline = generousDeadline);
  /// Nothing happens once it has ended.
  void sendSignal(int signal);

  /// What it has written so far.
  std::string standardOutput() const;
  std::string standardError() const;

 private:
  FileDescriptor output_;
  FileDescriptor error_;
  pid_t pid_ = -1;
  std::optional<Ending> ending_;
};

/// Returns once `condition` holds. Throws std::runtime_error, with what the program wrote, when it
/// ends before or the condition does not come to hold.
template <std::predicate Condition>
void awaitStart(ChildProcess& program, const std::string& name, Condition&& condition) {
  if (!eventually([&] { return program.ending() || condition(); }) || program.ending()) {
    throw std::runtime_error(name + " did not start: " + program.standardError());
  }
}

}  // namespace vistrel::testbed
