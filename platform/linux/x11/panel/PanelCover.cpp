#include "platform/linux/x11/panel/PanelCover.h"

#include <algorithm>

#include "platform/linux/x11/server/PixelGeometry.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// No panel's corners are rounder: theirs have a radius of 10 points, of at most 4 pixels each.
constexpr int roundest = 40;

/// What of `rect` is outside of `cut`; disjoint.
void addRest(const PixelRect& rect, const PixelRect& cut, std::vector<PixelRect>& rest) {
  const auto inner = intersection(rect, cut);
  if (isEmpty(inner)) return rest.push_back(rect);
  const int right = inner.x + inner.width;
  const int bottom = inner.y + inner.height;
  for (const PixelRect& part : {
           PixelRect{rect.x, rect.y, rect.width, inner.y - rect.y},
           PixelRect{rect.x, bottom, rect.width, rect.y + rect.height - bottom},
           PixelRect{rect.x, inner.y, inner.x - rect.x, inner.height},
           PixelRect{right, inner.y, rect.x + rect.width - right, inner.height},
       }) {
    if (!isEmpty(part)) rest.push_back(part);
  }
}

/// What `above` hides of `panel`, if that lies below it.
std::vector<PixelRect> hiddenBy(const PixelRect& above, const PixelRect& panel) {
  const int across = std::min(roundest, above.width / 2);
  const int down = std::min(roundest, above.height / 2);
  std::vector<PixelRect> hidden{
      {above.x + across, above.y, above.width - 2 * across, above.height},
      {above.x, above.y + down, above.width, above.height - 2 * down},
  };
  const bool sameLeft = above.x == panel.x;
  const bool sameRight = above.x + above.width == panel.x + panel.width;
  const bool sameTop = above.y == panel.y;
  const bool sameBottom = above.y + above.height == panel.y + panel.height;
  const int right = above.x + above.width - across;
  const int bottom = above.y + above.height - down;
  if (sameLeft && sameTop) hidden.push_back({above.x, above.y, across, down});
  if (sameRight && sameTop) hidden.push_back({right, above.y, across, down});
  if (sameLeft && sameBottom) hidden.push_back({above.x, bottom, across, down});
  if (sameRight && sameBottom) hidden.push_back({right, bottom, across, down});
  return hidden;
}

}  // namespace

bool isWhollyUnder(const PixelRect& panel, const std::vector<PixelRect>& above) {
  std::vector<PixelRect> seen{panel};
  for (const auto& each : above) {
    for (const auto& hidden : hiddenBy(each, panel)) {
      std::vector<PixelRect> rest;
      for (const auto& part : seen) addRest(part, hidden, rest);
      seen = std::move(rest);
    }
    if (seen.empty()) return true;
  }
  return false;
}

}  // namespace vistrel::platform::linux_desktop
