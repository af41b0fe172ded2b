#include "tests/desktop/TestedHere.h"

#include <algorithm>
#include <iterator>

namespace vistrel::testbed {

std::vector<WindowManager> managersTestedHere() {
  std::vector<WindowManager> managers{std::begin(windowManagers), std::end(windowManagers)};
  std::ranges::copy(furtherWindowManagers, std::back_inserter(managers));
  return managers;
}

std::vector<SourceProgram> programsTestedHere() { return {xterm(), wish()}; }

}  // namespace vistrel::testbed
