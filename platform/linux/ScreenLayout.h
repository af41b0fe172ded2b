#pragma once

#include <vector>

#include "platform/Geometry.h"
#include "platform/linux/PixelRect.h"

namespace vistrel::platform::linux_desktop {

/// Where a monitor lies among the pixels of the root window, and how large it shows things.
struct Monitor {
  PixelRect pixels;
  double pixelsPerPoint = 1;

  friend bool operator==(const Monitor&, const Monitor&) = default;
};

/// A monitor with its place in points, and the one conversion between the two: it goes on beyond
/// the monitor's edges, so that a window keeps its shape when it hangs over them.
struct LaidOutMonitor {
  Monitor monitor;
  /// Global display space: origin at the top-left of the primary monitor, y downwards.
  Rect points;

  Point toPoints(Point pixel) const;
  Rect toPoints(const PixelRect& pixels) const;
  /// Whole pixels: origin and size go to the nearest each for itself, so that a window keeps its
  /// size while it moves by fractions.
  PixelRect toPixels(const Rect& rect) const;

  friend bool operator==(const LaidOutMonitor&, const LaidOutMonitor&) = default;
};

/// The monitors as a value, in pixels as the display server has them and in points as the program
/// sees them. In points monitors that do not overlap in pixels do not overlap either, and those
/// that stand side by side with pixels of one size still touch.
///
/// A window belongs to the monitor that holds most of it, as its manager and its program see it
/// too: its size in points is what it measures there, wherever the rest of it reaches. One that no
/// monitor shows belongs to the nearest.
class ScreenLayout {
 public:
  /// No monitor known: a pixel is a point.
  ScreenLayout() : ScreenLayout(std::vector<Monitor>{}) {}
  /// The primary monitor first.
  explicit ScreenLayout(const std::vector<Monitor>& monitors);

  /// The primary one first; one of no size where none is known.
  const std::vector<LaidOutMonitor>& monitors() const { return monitors_; }

  const LaidOutMonitor& at(Point pixel) const;
  const LaidOutMonitor& holding(const PixelRect& pixels) const;
  /// Global display space.
  const LaidOutMonitor& holding(const Rect& points) const;

  Rect toPoints(const PixelRect& pixels) const { return holding(pixels).toPoints(pixels); }

  /// From global display space to screen space, and back.
  Rect flipped(const Rect& rect) const;
  Point flipped(Point point) const;

  friend bool operator==(const ScreenLayout&, const ScreenLayout&) = default;

 private:
  std::vector<LaidOutMonitor> monitors_;
};

}  // namespace vistrel::platform::linux_desktop
