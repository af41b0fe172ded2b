#include "platform/linux/x11/VisibleFrame.h"

#include <algorithm>

namespace vistrel::platform::linux_desktop {
namespace {

PixelRect grown(const PixelRect& rect, const Extents& by) {
  return {rect.x - by.left, rect.y - by.top, rect.width + by.left + by.right,
          rect.height + by.top + by.bottom};
}

int plausible(std::uint32_t extent) {
  constexpr std::uint32_t most = 0x7fff;
  return static_cast<int>(std::min(extent, most));
}

}  // namespace

Extents extentsFrom(const std::vector<std::uint32_t>& property) {
  if (property.size() != 4) return {};
  return {plausible(property[0]), plausible(property[1]), plausible(property[2]),
          plausible(property[3])};
}

PixelRect visibleFrame(const PixelRect& client, const Extents& decoration, const Extents& shadow) {
  // A frame around a window that draws a shadow shows that too.
  if (decoration != Extents{}) return grown(client, decoration);
  const auto visible = grown(client, {-shadow.left, -shadow.right, -shadow.top, -shadow.bottom});
  // Shadows wider than the window itself are a client's mistake.
  return isEmpty(visible) ? client : visible;
}

}  // namespace vistrel::platform::linux_desktop
