#include "platform/linux/qt/space/QtSpace.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <cassert>
#include <cmath>

#include "platform/linux/CurrentThread.h"

namespace vistrel::platform::linux_desktop {

namespace {

int nearest(double value) { return static_cast<int>(std::lround(value)); }

/// Monitors have even numbers of pixels more often than odd ones, and half a pixel of an even one
/// comes from rounding up.
int nearestOrLess(double value) { return static_cast<int>(std::ceil(value - 0.5)); }

}  // namespace

QtScreen QtScreen::of(const QScreen& screen) {
  return {screen.geometry().topLeft(), screen.geometry().size(), screen.devicePixelRatio()};
}

PixelRect QtScreen::pixels() const {
  return {first.x(), first.y(), nearestOrLess(size.width() * pixelsPerPoint),
          nearestOrLess(size.height() * pixelsPerPoint)};
}

Point QtScreen::toPixels(QPointF point) const {
  const QPointF pixel = first + (point - first) * pixelsPerPoint;
  return {pixel.x(), pixel.y()};
}

PixelRect QtScreen::toPixels(const QRect& rect) const {
  const Point origin = toPixels(QPointF(rect.topLeft()));
  return {qRound(origin.x), qRound(origin.y), qRound(rect.width() * pixelsPerPoint),
          qRound(rect.height() * pixelsPerPoint)};
}

QRect QtScreen::fromPixels(const PixelRect& pixels) const {
  return {first.x() + nearest((pixels.x - first.x()) / pixelsPerPoint),
          first.y() + nearest((pixels.y - first.y()) / pixelsPerPoint),
          nearest(pixels.width / pixelsPerPoint), nearest(pixels.height / pixelsPerPoint)};
}

std::vector<QtScreen> qtScreens() {
  assert(isMainThread());
  std::vector<QtScreen> screens;
  for (const QScreen* each : QGuiApplication::screens()) screens.push_back(QtScreen::of(*each));
  return screens;
}

QRect qtRect(const PixelRect& rect) { return {rect.x, rect.y, rect.width, rect.height}; }

PixelRect pixelRect(const QRect& rect) { return {rect.x(), rect.y(), rect.width(), rect.height()}; }

QtPlace qtPlace(const PixelRect& wanted, const QScreen& current) {
  const auto screen = qtScreenOf(wanted, QtScreen::of(current), qtScreens());
  const QRect geometry = screen.fromPixels(wanted);
  return {geometry, qtRect(screen.toPixels(geometry))};
}

QtScreen qtScreenOf(const PixelRect& pixels, const QtScreen& current,
                    const std::vector<QtScreen>& screens) {
  const QRect rect = qtRect(pixels);
  const auto areaOf = [](const QtScreen& each) { return qtRect(each.pixels()); };
  if (areaOf(current).contains(rect.center())) return current;
  const auto middle = std::find_if(screens.begin(), screens.end(), [&](const QtScreen& each) {
    return areaOf(each).contains(rect.center());
  });
  if (middle != screens.end()) return *middle;
  const auto last = std::find_if(screens.rbegin(), screens.rend(), [&](const QtScreen& each) {
    return areaOf(each).intersects(rect);
  });
  return last != screens.rend() ? *last : current;
}

Point pixelOf(QPointF point, const QtScreen& current, const std::vector<QtScreen>& screens) {
  const auto found = std::find_if(screens.begin(), screens.end(), [&](const QtScreen& each) {
    // Half-open, as the first point of one screen is not the last of another.
    return rect(each.first.x(), each.first.y(), each.size.width(), each.size.height())
        .contains({point.x(), point.y()});
  });
  return (found != screens.end() ? *found : current).toPixels(point);
}

PixelRect toPixels(const QRectF& points, double pixelsPerPoint) {
  const int left = nearest(points.left() * pixelsPerPoint);
  const int top = nearest(points.top() * pixelsPerPoint);
  return {left, top, nearest(points.right() * pixelsPerPoint) - left,
          nearest(points.bottom() * pixelsPerPoint) - top};
}

}  // namespace vistrel::platform::linux_desktop
