#pragma once

#include <QPointF>
#include <QRect>

#include "platform/Geometry.h"
#include "platform/linux/PanelSurface.h"

namespace vistrel::platform::linux_desktop {

/// Converts between screen space and the toolkit's desktop space. Both are in points; the toolkit's
/// has its origin at the top-left of the desktop and y growing downwards.
class ScreenSpace {
 public:
  /// `primaryScreen` in desktop space.
  explicit ScreenSpace(const QRect& primaryScreen)
      : left_(primaryScreen.x()), bottom_(primaryScreen.y() + primaryScreen.height()) {}

  Point fromDesktop(QPointF point) const { return {point.x() - left_, bottom_ - point.y()}; }
  Rect fromDesktop(const QRect& rect) const;
  /// The toolkit places windows on whole points: origin and size are rounded each for itself, so
  /// that a window keeps its size while it moves by fractions.
  QRect toDesktop(const Rect& rect) const;

 private:
  double left_;
  double bottom_;
};

/// The one conversion from points to pixels: edges go to the nearest pixel, so that rectangles that
/// touch still touch.
PixelRect toPixels(const QRectF& points, double pixelsPerPoint);

}  // namespace vistrel::platform::linux_desktop
