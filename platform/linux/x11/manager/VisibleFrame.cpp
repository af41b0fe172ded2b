#include "platform/linux/x11/manager/VisibleFrame.h"

#include <algorithm>

namespace vistrel::platform::linux_desktop {
namespace {

PixelRect grown(const PixelRect& rect, const Extents& by) {
  return {rect.x - by.left, rect.y - by.top, rect.width + by.left + by.right,
          rect.height + by.top + by.bottom};
}

/// Many times the thickest title bar, and the widest shadow: anything can stand in a property.
bool isAbsurd(std::uint32_t extent) { return extent > 1000; }

}  // namespace

Extents extentsFrom(const std::vector<std::uint32_t>& property) {
  if (property.size() != 4 || std::any_of(property.begin(), property.end(), isAbsurd)) return {};
  const std::vector<int> widths(property.begin(), property.end());
  return {widths[0], widths[1], widths[2], widths[3]};
}

PixelRect visibleFrame(const PixelRect& client, const Extents& decoration, const Extents& shadow) {
  // A frame around a window that draws a shadow shows that too.
  if (decoration != Extents{}) return grown(client, decoration);
  const auto visible = grown(client, {-shadow.left, -shadow.right, -shadow.top, -shadow.bottom});
  // Shadows wider than the window itself are a client's mistake.
  return isEmpty(visible) ? client : visible;
}

}  // namespace vistrel::platform::linux_desktop
