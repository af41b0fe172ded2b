#include "platform/linux/qt/ScreenSpace.h"

#include <cmath>

namespace vistrel::platform::linux_desktop {

namespace {

int nearest(double value) { return static_cast<int>(std::lround(value)); }

}  // namespace

Rect ScreenSpace::fromDesktop(const QRect& rect) const {
  return platform::rect(rect.x() - left_, bottom_ - rect.y() - rect.height(), rect.width(),
                        rect.height());
}

QRect ScreenSpace::toDesktop(const Rect& rect) const {
  return {nearest(rect.minX() + left_), nearest(bottom_ - rect.maxY()), nearest(rect.width()),
          nearest(rect.height())};
}

PixelRect toPixels(const QRectF& points, double pixelsPerPoint) {
  const int left = nearest(points.left() * pixelsPerPoint);
  const int top = nearest(points.top() * pixelsPerPoint);
  return {left, top, nearest(points.right() * pixelsPerPoint) - left,
          nearest(points.bottom() * pixelsPerPoint) - top};
}

}  // namespace vistrel::platform::linux_desktop
