#include "tests/packaging/ProgramOutput.h"

#include <cstdlib>
#include <sstream>
#include <stdexcept>

#include "tests/support/ChildProcess.h"

namespace vistrel::testbed {

std::string outputOf(const std::vector<std::string>& arguments) {
  const char* path = std::getenv("PATH");
  ChildProcess process(
      {.arguments = arguments,
       .environment = {std::string("PATH=") + (path != nullptr ? path : ""), "LC_ALL=C.UTF-8"}});
  const auto ending = process.waitForEnd();
  if (!ending || ending->exitStatus != 0) {
    throw std::runtime_error(arguments.front() + " failed: " + process.standardError());
  }
  return process.standardOutput();
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    lines.push_back(line);
  }
  return lines;
}

}  // namespace vistrel::testbed
