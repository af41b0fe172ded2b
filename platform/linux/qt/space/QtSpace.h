#pragma once

#include <QPointF>
#include <QRect>
#include <vector>

#include "platform/Geometry.h"
#include "platform/linux/PixelRect.h"

class QScreen;

namespace vistrel::platform::linux_desktop {

/// Qt 6.4.2 counts points screen by screen: each begins at the number of its own first pixel, so
/// that screens with several pixels to a point have gaps between them. That is no space to keep
/// frames in; what the toolkit says is taken back to pixels of the root window at once.
struct QtScreen {
  /// The number of its first pixel and of its first point.
  QPoint first;
  /// In points.
  QSize size;
  double pixelsPerPoint = 1;

  static QtScreen of(const QScreen& screen);

  /// The toolkit rounds a size to whole points: what it rounded up or down by half a point is lost.
  PixelRect pixels() const;
  Point toPixels(QPointF point) const;
  /// As the toolkit itself rounds.
  PixelRect toPixels(const QRect& rect) const;
  QRect fromPixels(const PixelRect& pixels) const;

  friend bool operator==(const QtScreen&, const QtScreen&) = default;
};

/// All of the toolkit's screens as of now, in its order. Main thread.
std::vector<QtScreen> qtScreens();

/// Rectangles of pixels in the toolkit's type.
QRect qtRect(const PixelRect& rect);
PixelRect pixelRect(const QRect& rect);

/// A native window's geometry as the toolkit wants to hear it, and where that takes the window.
struct QtPlace {
  QRect geometry;
  /// Of the root window. Not quite what was wanted where pixels make no whole points.
  QRect pixels;
};

/// How to put a window, which the toolkit has on the screen `current`, at `wanted`.
QtPlace qtPlace(const PixelRect& wanted, const QScreen& current);

/// Of which screen the toolkit takes a window to be that is at `current` and goes to `pixels`.
QtScreen qtScreenOf(const PixelRect& pixels, const QtScreen& current,
                    const std::vector<QtScreen>& screens);

/// The pixel that the toolkit means by a point of its desktop space; where no screen has the point,
/// `current` goes on beyond its edges.
Point pixelOf(QPointF point, const QtScreen& current, const std::vector<QtScreen>& screens);

/// The one conversion from points to pixels inside a window: edges go to the nearest pixel, so that
/// rectangles that touch still touch.
PixelRect toPixels(const QRectF& points, double pixelsPerPoint);

}  // namespace vistrel::platform::linux_desktop
