#include "platform/linux/x11/FramePacing.h"

#include <algorithm>

namespace vistrel::platform::linux_desktop {

double earliestNextFrame(double pace, double interval) {
  // As much as a source's own timer jitters: 4 ms at 30 frames a second.
  constexpr double tolerance = 1.0 / 8;
  return pace + interval * (1 - tolerance);
}

double paceAfterFrame(double pace, double interval, double now) {
  return std::max(now, pace + interval);
}

}  // namespace vistrel::platform::linux_desktop
