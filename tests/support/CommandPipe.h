#pragma once

#include <functional>
#include <string>

namespace vistrel::testbed {

/// What a program of the test bed gets its commands by, and answers them: see CommandedProgram.
class CommandPipe {
 public:
  /// The descriptors to read commands from and to write answers to.
  CommandPipe(int commands, int answers) : commands_(commands), answers_(answers) {}

  /// Readable when there are commands, or none to come any more.
  int descriptor() const { return commands_; }
  /// Reads what there is, and answers each whole command with what `obey` makes of it: a line that
  /// is not empty. False once there are none to come any more. Throws std::system_error when the
  /// test is gone.
  bool serve(const std::function<std::string(const std::string&)>& obey);

 private:
  int commands_;
  int answers_;
  std::string pending_;
};

}  // namespace vistrel::testbed
