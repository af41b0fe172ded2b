#include "tests/support/PersonInput.h"

#include "tests/support/Poll.h"

namespace vistrel::testbed {

void PersonInput::click(int count, Button button) {
  for (int i = 0; i < count; ++i) {
    // Two presses within one millisecond of the server's clock are no double-click to toolkits.
    letOthersRun();
    press(button);
    release(button);
  }
}

void PersonInput::clickAt(Point point, int count, Button button) {
  moveTo(point);
  click(count, button);
}

void PersonInput::drag(Point from, Point to) {
  moveTo(from);
  press();
  constexpr int steps = 8;
  for (int step = 1; step <= steps; ++step) {
    letOthersRun();
    moveTo({from.x + (to.x - from.x) * step / steps, from.y + (to.y - from.y) * step / steps});
  }
  release();
}

void PersonInput::type(std::uint32_t key) {
  turnKey(key, true);
  turnKey(key, false);
}

void PersonInput::typeHolding(std::uint32_t modifier, std::uint32_t key) {
  turnKey(modifier, true);
  type(key);
  turnKey(modifier, false);
}

}  // namespace vistrel::testbed
