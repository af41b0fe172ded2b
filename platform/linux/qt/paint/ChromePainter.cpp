#include "platform/linux/qt/paint/ChromePainter.h"

#include <QImage>
#include <algorithm>
#include <cassert>
#include <cmath>
#include <vector>

#include "platform/linux/CurrentThread.h"
#include "platform/linux/qt/paint/Colors.h"
#include "platform/linux/qt/paint/PainterContext.h"
#include "platform/linux/qt/space/QtSpace.h"

namespace vistrel::platform::linux_desktop {

namespace {

/// A transparent image over `pixels`, which it does not own.
QImage imageOver(std::vector<std::uint32_t>& pixels, int width, int height, double pixelsPerPoint) {
  QImage image(reinterpret_cast<uchar*>(pixels.data()), width, height,
               width * qsizetype{sizeof(std::uint32_t)}, QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(pixelsPerPoint);
  image.fill(Qt::transparent);
  return image;
}

/// Every pixel that `points` touches at all, within `bounds`.
PixelRect coveringPixels(const QRectF& points, double scale, const PixelRect& bounds) {
  const int left = std::max(bounds.x, static_cast<int>(std::floor(points.left() * scale)));
  const int top = std::max(bounds.y, static_cast<int>(std::floor(points.top() * scale)));
  const int right =
      std::min(bounds.x + bounds.width, static_cast<int>(std::ceil(points.right() * scale)));
  const int bottom =
      std::min(bounds.y + bounds.height, static_cast<int>(std::ceil(points.bottom() * scale)));
  return {left, top, right - left, bottom - top};
}

int cornerRadiusInPixels(const View& contentView, double pixelsPerPoint) {
  const Layer* layer = contentView.layer();
  if (layer == nullptr || !layer->masksToBounds()) return 0;
  return static_cast<int>(std::lround(layer->cornerRadius() * pixelsPerPoint));
}

}  // namespace

PaintedChrome paintChrome(View& contentView, int width, int height, double pixelsPerPoint) {
  assert(isMainThread());
  PaintedChrome painted;
  PanelChrome& chrome = painted.chrome;
  chrome.width = width;
  chrome.height = height;
  chrome.cornerRadius = cornerRadiusInPixels(contentView, pixelsPerPoint);

  std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width) *
                                    static_cast<std::size_t>(height));
  QImage image = imageOver(pixels, width, height, pixelsPerPoint);
  QPainter painter(&image);
  PainterContext context(painter, darkPalette(), contentView.frame().size);
  paint(contentView, context);
  painter.end();
  chrome.pixels = ChromePixels(width, pixels);

  if (!context.contents()) return painted;
  painted.contentsLayer = context.contents()->layer;
  chrome.contents = toPixels(context.contents()->rect, pixelsPerPoint);
  chrome.contentsBackground = painted.contentsLayer->backgroundColor().value_or(Color::black());
  for (const QRectF& overlay : context.overlays()) {
    chrome.overlays.push_back(coveringPixels(overlay, pixelsPerPoint, *chrome.contents));
  }
  return painted;
}

}  // namespace vistrel::platform::linux_desktop
