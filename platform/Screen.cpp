#include "platform/Screen.h"

namespace vistrel::platform {

std::optional<Screen> screenShowing(const Rect& frame, const std::vector<Screen>& screens) {
  std::optional<Screen> best;
  double bestArea = 0;
  for (const Screen& screen : screens) {
    const Rect shown = intersection(frame, screen.frame);
    const double area = shown.width() * shown.height();
    if (area > bestArea) {
      best = screen;
      bestArea = area;
    }
  }
  return best;
}

}  // namespace vistrel::platform
