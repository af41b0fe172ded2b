#include "tests/support/CommandedProgram.h"

#include <stdexcept>
#include <unistd.h>
#include <utility>

namespace vistrel::testbed {
namespace {

ChildProcess::Command commandFor(const std::string& path, const std::vector<std::string>& arguments,
                                 const std::vector<std::string>& environment, int commands,
                                 int answers) {
  ChildProcess::Command command{
      .arguments = {path, std::to_string(commands), std::to_string(answers)},
      .environment = environment,
      .inherited = {commands, answers}};
  command.arguments.insert(command.arguments.end(), arguments.begin(), arguments.end());
  return command;
}

}  // namespace

CommandedProgram::CommandedProgram(std::string name, const std::string& path,
                                   const std::vector<std::string>& arguments,
                                   const std::vector<std::string>& environment, Pipe commands,
                                   Pipe answers)
    : name_(std::move(name)),
      commands_(std::move(commands.writeEnd)),
      answers_(std::move(answers.readEnd)),
      program_(commandFor(path, arguments, environment, commands.readEnd.get(),
                          answers.writeEnd.get())) {
  commands.readEnd.close();
  answers.writeEnd.close();
}

std::string CommandedProgram::tell(const std::string& command) {
  const std::string line = command + '\n';
  if (::write(commands_.get(), line.data(), line.size()) != static_cast<ssize_t>(line.size())) {
    throw std::runtime_error(name_ + " is gone");
  }
  std::string answer = readLine(answers_);
  if (answer.empty()) {
    throw std::runtime_error(name_ + " does not " + command + ": " + program_.standardError());
  }
  return answer;
}

}  // namespace vistrel::testbed
