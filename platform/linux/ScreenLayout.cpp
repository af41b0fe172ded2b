#include "platform/linux/ScreenLayout.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

namespace vistrel::platform::linux_desktop {

namespace {

int nearest(double value) { return static_cast<int>(std::lround(value)); }

Rect inReals(const PixelRect& pixels) {
  return rect(pixels.x, pixels.y, pixels.width, pixels.height);
}

/// The pixels from `first` to `end` of one axis that a monitor takes.
struct Stretch {
  int first = 0;
  int end = 0;
  double pixelsPerPoint = 1;
};

/// One axis of the desktop: how many points lie between two pixels. Every pixel takes as many
/// points as the coarsest of the monitors there wants for it, so none is too short.
class Axis {
 public:
  explicit Axis(std::vector<Stretch> stretches) : stretches_(std::move(stretches)) {
    for (const Stretch& each : stretches_) edges_.insert({each.first, each.end});
  }

  double pointsBetween(int from, int to) const {
    if (from > to) return -pointsBetween(to, from);
    double points = 0;
    auto edge = edges_.upper_bound(from);
    while (from < to) {
      const int next = edge == edges_.end() ? to : std::min(to, *edge++);
      points += (next - from) / pixelsPerPointAt(from);
      from = next;
    }
    return points;
  }

 private:
  /// Where no monitor is, as on the primary one.
  double pixelsPerPointAt(int pixel) const {
    double coarsest = 0;
    for (const Stretch& each : stretches_) {
      if (pixel < each.first || pixel >= each.end) continue;
      coarsest = coarsest == 0 ? each.pixelsPerPoint : std::min(coarsest, each.pixelsPerPoint);
    }
    return coarsest == 0 ? stretches_.front().pixelsPerPoint : coarsest;
  }

  std::vector<Stretch> stretches_;
  std::set<int> edges_;
};

/// The axis along which a rectangle has that `first` pixel and that `length`.
Axis axisOf(const std::vector<Monitor>& monitors, int PixelRect::*first, int PixelRect::*length) {
  std::vector<Stretch> stretches;
  stretches.reserve(monitors.size());
  for (const auto& [pixels, scale] : monitors) {
    stretches.push_back({pixels.*first, pixels.*first + pixels.*length, scale});
  }
  return Axis(std::move(stretches));
}

double squaredDistance(const Rect& a, const Rect& b) {
  const double dx = std::max({a.minX() - b.maxX(), b.minX() - a.maxX(), 0.0});
  const double dy = std::max({a.minY() - b.maxY(), b.minY() - a.maxY(), 0.0});
  return dx * dx + dy * dy;
}

/// Whether more of `wanted` lies in `a` than in `b`, or if none does, whether `a` is nearer.
bool isBetter(const Rect& a, const Rect& b, const Rect& wanted) {
  const auto shown = [&](const Rect& area) {
    const Rect common = intersection(area, wanted);
    return common.width() * common.height();
  };
  const double difference = shown(a) - shown(b);
  if (difference != 0) return difference > 0;
  return squaredDistance(a, wanted) < squaredDistance(b, wanted);
}

template <class AreaOf>
const LaidOutMonitor& best(const std::vector<LaidOutMonitor>& monitors, const Rect& wanted,
                           AreaOf areaOf) {
  return *std::min_element(monitors.begin(), monitors.end(),
                           [&](const LaidOutMonitor& a, const LaidOutMonitor& b) {
                             return isBetter(areaOf(a), areaOf(b), wanted);
                           });
}

}  // namespace

Point LaidOutMonitor::toPoints(Point pixel) const {
  return {points.minX() + (pixel.x - monitor.pixels.x) / monitor.pixelsPerPoint,
          points.minY() + (pixel.y - monitor.pixels.y) / monitor.pixelsPerPoint};
}

Rect LaidOutMonitor::toPoints(const PixelRect& pixels) const {
  return {toPoints(inReals(pixels).origin),
          {pixels.width / monitor.pixelsPerPoint, pixels.height / monitor.pixelsPerPoint}};
}

PixelRect LaidOutMonitor::toPixels(const Rect& rect) const {
  const double scale = monitor.pixelsPerPoint;
  return {nearest(monitor.pixels.x + (rect.minX() - points.minX()) * scale),
          nearest(monitor.pixels.y + (rect.minY() - points.minY()) * scale),
          nearest(rect.width() * scale), nearest(rect.height() * scale)};
}

ScreenLayout::ScreenLayout(const std::vector<Monitor>& monitors) {
  if (monitors.empty()) {
    monitors_.emplace_back();
    return;
  }
  const Axis horizontal = axisOf(monitors, &PixelRect::x, &PixelRect::width);
  const Axis vertical = axisOf(monitors, &PixelRect::y, &PixelRect::height);
  const PixelRect& primary = monitors.front().pixels;
  for (const Monitor& each : monitors) {
    const PixelRect& pixels = each.pixels;
    monitors_.push_back(
        {each, rect(horizontal.pointsBetween(primary.x, pixels.x),
                    vertical.pointsBetween(primary.y, pixels.y), pixels.width / each.pixelsPerPoint,
                    pixels.height / each.pixelsPerPoint)});
  }
}

const LaidOutMonitor& ScreenLayout::at(Point pixel) const {
  return best(monitors_, {pixel, {1, 1}},
              [](const LaidOutMonitor& each) { return inReals(each.monitor.pixels); });
}

const LaidOutMonitor& ScreenLayout::holding(const PixelRect& pixels) const {
  return best(monitors_, inReals(pixels),
              [](const LaidOutMonitor& each) { return inReals(each.monitor.pixels); });
}

const LaidOutMonitor& ScreenLayout::holding(const Rect& points) const {
  return best(monitors_, points, [](const LaidOutMonitor& each) { return each.points; });
}

Rect ScreenLayout::flipped(const Rect& rect) const {
  return {{rect.minX(), monitors_.front().points.maxY() - rect.maxY()}, rect.size};
}

Point ScreenLayout::flipped(Point point) const {
  return {point.x, monitors_.front().points.maxY() - point.y};
}

}  // namespace vistrel::platform::linux_desktop
