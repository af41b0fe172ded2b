#pragma once

#include <vector>
#include <xcb/xcb.h>

#include "platform/linux/PixelRect.h"

namespace vistrel::platform::linux_desktop {

struct PixelSize {
  int width = 0;
  int height = 0;

  friend bool operator==(const PixelSize&, const PixelSize&) = default;
};

inline bool isEmpty(const PixelSize& size) { return size.width <= 0 || size.height <= 0; }
inline bool isEmpty(const PixelRect& rect) { return rect.width <= 0 || rect.height <= 0; }
inline PixelSize sizeOf(const PixelRect& rect) { return {rect.width, rect.height}; }
inline PixelRect rectOf(const PixelSize& size) { return {0, 0, size.width, size.height}; }
inline PixelRect moved(const PixelRect& rect, int dx, int dy) {
  return {rect.x + dx, rect.y + dy, rect.width, rect.height};
}

/// Empty when they do not overlap.
PixelRect intersection(const PixelRect& a, const PixelRect& b);
bool contains(const PixelRect& outer, const PixelRect& inner);
/// The smallest rectangle around both, either of which may be empty.
PixelRect unionOf(const PixelRect& a, const PixelRect& b);

/// Rectangles that cover the same without overlapping, at the price of covering more.
std::vector<PixelRect> mergedWhereOverlapping(std::vector<PixelRect> rects);

/// As requests carry it: cut to what 16 bits hold.
xcb_rectangle_t wireRect(const PixelRect& rect);

/// Rectangles that have changed. Many are merged into the one around them, since each costs a
/// request or more.
class ChangedRects {
 public:
  void add(const PixelRect& rect);
  void clear() { rects_.clear(); }
  bool empty() const { return rects_.empty(); }
  const std::vector<PixelRect>& rects() const { return rects_; }
  auto begin() const { return rects_.begin(); }
  auto end() const { return rects_.end(); }

 private:
  std::vector<PixelRect> rects_;
};

}  // namespace vistrel::platform::linux_desktop
