#include "tests/support/NativeDock.h"

namespace vistrel::testbed {
namespace {

std::string textOf(int a, int b) { return std::to_string(a) + ' ' + std::to_string(b); }

}  // namespace

NativeDock::NativeDock(const std::vector<std::string>& environment, Rect area)
    : program_("a native dock", VISTREL_NATIVE_WINDOW, {"com.example.dock", "dock"}, environment) {
  resize(area.width, area.height);
  moveTo({area.x, area.y});
  program_.tell("appear");
}

void NativeDock::moveTo(Point origin) { program_.tell("place " + textOf(origin.x, origin.y)); }

void NativeDock::resize(int width, int height) { program_.tell("resize " + textOf(width, height)); }

void NativeDock::close() {
  program_.tell("close");
  program_.waitForEnd();
}

}  // namespace vistrel::testbed
