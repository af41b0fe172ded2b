#include "platform/linux/x11/server/PixelGeometry.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace vistrel::platform::linux_desktop {
namespace {

template <class Narrow>
Narrow clamped(int value) {
  using Limits = std::numeric_limits<Narrow>;
  return static_cast<Narrow>(std::clamp<int>(value, Limits::min(), Limits::max()));
}

PixelRect spanning(int left, int top, int right, int bottom) {
  return {left, top, std::max(0, right - left), std::max(0, bottom - top)};
}

}  // namespace

PixelRect intersection(const PixelRect& a, const PixelRect& b) {
  return spanning(std::max(a.x, b.x), std::max(a.y, b.y), std::min(a.x + a.width, b.x + b.width),
                  std::min(a.y + a.height, b.y + b.height));
}

bool contains(const PixelRect& outer, const PixelRect& inner) {
  return intersection(outer, inner) == inner;
}

PixelRect unionOf(const PixelRect& a, const PixelRect& b) {
  if (isEmpty(a)) return b;
  if (isEmpty(b)) return a;
  return spanning(std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x + a.width, b.x + b.width),
                  std::max(a.y + a.height, b.y + b.height));
}

std::vector<PixelRect> mergedWhereOverlapping(std::vector<PixelRect> rects) {
  std::vector<PixelRect> merged;
  while (!rects.empty()) {
    auto rect = rects.back();
    rects.pop_back();
    const auto other = std::find_if(merged.begin(), merged.end(), [&](const PixelRect& each) {
      return !isEmpty(intersection(each, rect));
    });
    if (other == merged.end()) {
      merged.push_back(rect);
    } else {
      rects.push_back(unionOf(rect, *other));
      merged.erase(other);
    }
  }
  return merged;
}

xcb_rectangle_t wireRect(const PixelRect& rect) {
  return {clamped<std::int16_t>(rect.x), clamped<std::int16_t>(rect.y),
          clamped<std::uint16_t>(rect.width), clamped<std::uint16_t>(rect.height)};
}

void ChangedRects::add(const PixelRect& rect) {
  constexpr std::size_t most = 16;
  if (isEmpty(rect)) return;
  for (const auto& each : rects_) {
    if (contains(each, rect)) return;
  }
  std::erase_if(rects_, [&](const PixelRect& each) { return contains(rect, each); });
  rects_.push_back(rect);
  if (rects_.size() <= most) return;
  PixelRect around;
  for (const auto& each : rects_) around = unionOf(around, each);
  rects_ = {around};
}

}  // namespace vistrel::platform::linux_desktop
