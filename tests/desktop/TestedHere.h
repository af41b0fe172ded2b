#pragma once

#include <vector>

#include "tests/support/WindowManager.h"

namespace vistrel::testbed {

/// What tests are run with that several programs of tests consist of. Each of those says so itself.
std::vector<WindowManager> managersTestedHere();

}  // namespace vistrel::testbed
