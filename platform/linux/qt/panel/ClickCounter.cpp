#include "platform/linux/qt/panel/ClickCounter.h"

#include <cmath>

namespace vistrel::platform::linux_desktop {

int ClickCounter::press(Point position, std::uint64_t milliseconds, Limits limits) {
  const bool isNear = std::abs(position.x - lastPosition_.x) <= limits.distance &&
                      std::abs(position.y - lastPosition_.y) <= limits.distance;
  // Unsigned: a clock that was set back gives a huge difference, hence a new first click.
  const bool isSoon = milliseconds - lastMilliseconds_ <= limits.milliseconds;
  count_ = count_ > 0 && isNear && isSoon ? count_ + 1 : 1;
  lastPosition_ = position;
  lastMilliseconds_ = milliseconds;
  return count_;
}

}  // namespace vistrel::platform::linux_desktop
