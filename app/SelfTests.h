#pragma once

#include <optional>
#include <string>
#include <vector>

namespace vistrel {

/// What the program does in place of its job when it is asked to.
enum class SelfTest {
  diagnostics,     // lists the system's classes for virtual displays
  virtualDisplay,  // makes a virtual display and reports what the system made of it
};

/// The one that the process's arguments (program path included) ask for, if any.
std::optional<SelfTest> selfTestAskedFor(const std::vector<std::string>& arguments);

/// Writes all that the test has to say to standard error, as one text, and answers the program's
/// exit status. Main thread.
int run(SelfTest test);

}  // namespace vistrel
