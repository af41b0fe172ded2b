#include "tests/support/HandOnX.h"

#include <chrono>
#include <stdexcept>

#include "tests/support/Poll.h"
#include "tests/support/XWindows.h"

namespace vistrel::testbed {

void HandOnX::pointAt(Point point) {
  constexpr std::chrono::milliseconds onItsWay{200};
  const bool isThere = eventually([&] {
    input_->moveTo({point.x + 1, point.y});
    input_->moveTo(point);
    return eventually([&] { return pointerOn(*connection_).place == point; }, onItsWay);
  });
  if (!isThere) {
    throw std::runtime_error("the pointer does not get there in windows of X");
  }
}

void HandOnX::clickAt(Point point, int count, Button button) {
  pointAt(point);
  input_->click(count, button);
}

void HandOnX::drag(Point from, Point to) {
  pointAt(from);
  input_->press();
  static_cast<void>(eventually([&] { return isHolding(); }));
  constexpr int steps = 8;
  for (int step = 1; step <= steps; ++step) {
    pointAt({from.x + (to.x - from.x) * step / steps, from.y + (to.y - from.y) * step / steps});
  }
  input_->release();
  static_cast<void>(eventually([&] { return !isHolding(); }));
}

bool HandOnX::isHolding() const {
  return (pointerOn(*connection_).held & XCB_KEY_BUT_MASK_BUTTON_1) != 0;
}

}  // namespace vistrel::testbed
