#include "platform/linux/qt/windows/Reach.h"

#include <algorithm>
#include <cmath>

namespace vistrel::platform::linux_desktop {

namespace {

/// The part of a title bar that a pointer needs to drag a window by.
constexpr double graspWidth = 80;
constexpr double graspHeight = 24;

/// By so much a size in points may be off that was made of whole pixels.
constexpr double wholePixels = 1;

/// How far apart they are across and up, together.
double distance(const Rect& a, const Rect& b) {
  const double dx = std::max({a.minX() - b.maxX(), b.minX() - a.maxX(), 0.0});
  const double dy = std::max({a.minY() - b.maxY(), b.minY() - a.maxY(), 0.0});
  return dx + dy;
}

Point middleOf(const Rect& rect) { return {rect.midX(), rect.midY()}; }

const Screen& nearestTo(const Rect& frame, const std::vector<Screen>& screens) {
  const Rect middle{middleOf(frame), {}};
  return *std::min_element(screens.begin(), screens.end(), [&](const Screen& a, const Screen& b) {
    return distance(middle, a.visibleFrame) < distance(middle, b.visibleFrame);
  });
}

/// Of the area that they span.
Size sizeOfAll(const std::vector<Screen>& screens) {
  Rect all = screens.front().frame;
  for (const Screen& screen : screens) {
    const Rect& each = screen.frame;
    const double right = std::max(all.maxX(), each.maxX());
    const double top = std::max(all.maxY(), each.maxY());
    all.origin = {std::min(all.minX(), each.minX()), std::min(all.minY(), each.minY())};
    all.size = {right - all.minX(), top - all.minY()};
  }
  return all.size;
}

}  // namespace

bool isReachable(const Rect& frame, const std::vector<Screen>& screens) {
  const double height = std::min(graspHeight, frame.height());
  const Rect topEdge = rect(frame.minX(), frame.maxY() - height, frame.width(), height);
  return std::any_of(screens.begin(), screens.end(), [&](const Screen& screen) {
    const Rect shown = intersection(topEdge, screen.visibleFrame);
    return shown.width() >= std::min(graspWidth, frame.width()) && shown.height() >= height;
  });
}

bool isCredible(const Rect& frame, Size smallest, const std::vector<Screen>& screens) {
  if (!isReachable(frame, screens)) return false;
  const Size largest = sizeOfAll(screens);
  return frame.width() > smallest.width - wholePixels &&
         frame.width() < largest.width + wholePixels &&
         frame.height() > smallest.height - wholePixels &&
         frame.height() < largest.height + wholePixels;
}

Rect broughtIntoReach(const Rect& frame, const std::vector<Screen>& screens) {
  if (screens.empty() || isReachable(frame, screens)) return frame;
  const Rect& visible = nearestTo(frame, screens).visibleFrame;
  const double right = std::min(frame.minX(), visible.maxX() - frame.width());
  const double up = std::max(frame.minY(), visible.minY());
  return {{std::max(right, visible.minX()), std::min(up, visible.maxY() - frame.height())},
          frame.size};
}

}  // namespace vistrel::platform::linux_desktop
