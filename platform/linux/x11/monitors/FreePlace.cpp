#include "platform/linux/x11/monitors/FreePlace.h"

#include <algorithm>

#include "platform/linux/x11/server/PixelGeometry.h"

namespace vistrel::platform::linux_desktop {

PixelRect freePlace(PixelRect wanted, const std::vector<PixelRect>& others) {
  const auto isInTheWay = [&](const PixelRect& other) {
    return !isEmpty(intersection(other, wanted));
  };
  // Each step passes one of them by for good.
  for (auto next = std::find_if(others.begin(), others.end(), isInTheWay); next != others.end();
       next = std::find_if(others.begin(), others.end(), isInTheWay)) {
    wanted.x = next->x + next->width;
  }
  return wanted;
}

}  // namespace vistrel::platform::linux_desktop
