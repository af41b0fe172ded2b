#pragma once

#include <string>
#include <vector>

#include "tests/support/ChildProcess.h"
#include "tests/support/FileDescriptor.h"

namespace vistrel::testbed {

/// A program of the test bed that does what a test tells it, line by line: see CommandPipe.
class CommandedProgram {
 public:
  /// `name` is what it stands for in messages. Its first two arguments are the descriptors of its
  /// CommandPipe, before `arguments`.
  CommandedProgram(std::string name, const std::string& path,
                   const std::vector<std::string>& arguments,
                   const std::vector<std::string>& environment)
      : CommandedProgram(std::move(name), path, arguments, environment, Pipe::open(),
                         Pipe::open()) {}

  pid_t pid() const { return program_.pid(); }
  /// Its answer. Throws std::runtime_error, with what it wrote, when it is gone.
  std::string tell(const std::string& command);
  void waitForEnd() { static_cast<void>(program_.waitForEnd()); }

 private:
  CommandedProgram(std::string name, const std::string& path,
                   const std::vector<std::string>& arguments,
                   const std::vector<std::string>& environment, Pipe commands, Pipe answers);

  std::string name_;
  FileDescriptor commands_;
  FileDescriptor answers_;
  ChildProcess program_;
};

}  // namespace vistrel::testbed
