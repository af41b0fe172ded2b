#pragma once

#include <vector>

#include "tests/desktop/SourceProgram.h"
#include "tests/support/WindowManager.h"

namespace vistrel::testbed {

/// What tests are run with that several programs of tests consist of. Each of those says so itself.
std::vector<WindowManager> managersTestedHere();
std::vector<SourceProgram> programsTestedHere();

}  // namespace vistrel::testbed
