#include "tests/desktop/TestedHere.h"

#include <algorithm>
#include <iterator>
#include <span>

namespace vistrel::testbed {

// All there are, so that one table shows what holds where.
std::vector<WindowManager> managersTestedHere() {
  std::vector<WindowManager> managers;
  for (const auto& each : {std::span<const WindowManager>(windowManagers),
                           std::span<const WindowManager>(furtherWindowManagers),
                           std::span<const WindowManager>(fieldWindowManagers)}) {
    std::ranges::copy(each, std::back_inserter(managers));
  }
  return managers;
}

std::vector<SourceProgram> programsTestedHere() { return {gnomeCalculator(), kcalc(), mpv()}; }

}  // namespace vistrel::testbed
