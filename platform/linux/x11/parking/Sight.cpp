#include "platform/linux/x11/parking/Sight.h"

#include <algorithm>
#include <cstdint>

#include "platform/linux/x11/server/PixelGeometry.h"

namespace vistrel::platform::linux_desktop {
namespace {

std::int64_t pixelsOf(const PixelRect& rect) { return std::int64_t{rect.width} * rect.height; }

}  // namespace

bool isInSight(const PixelRect& window, const std::vector<PixelRect>& monitors) {
  return std::any_of(monitors.begin(), monitors.end(), [&](const PixelRect& each) {
    return 4 * pixelsOf(intersection(window, each)) > pixelsOf(window);
  });
}

}  // namespace vistrel::platform::linux_desktop
