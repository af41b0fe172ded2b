#include "platform/linux/qt/paint/Symbols.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>

namespace vistrel::platform::linux_desktop {

namespace {

constexpr const char* mirrorSymbol = "rectangle.on.rectangle.angled";

QPainterPath roundedRect(const QRectF& rect, double radius) {
  QPainterPath path;
  path.addRoundedRect(rect, radius, radius);
  return path;
}

/// One window leaning on another, in a square of 16 units: the one behind shows as an outline that
/// keeps a gap to the one in front.
void drawLeaningWindows(QPainter& painter, const QColor& tint) {
  constexpr double line = 1.4;
  constexpr double gap = 1.3;
  constexpr double lean = -9;  // degrees
  const QRectF behind(1.6, 2.6, 9.4, 7.4);
  const QRectF front(5.0, 6.4, 9.6, 7.4);
  painter.translate(8, 8);
  painter.rotate(lean);
  painter.translate(-8, -8);

  QPainterPathStroker stroker;
  stroker.setWidth(line);
  const QPainterPath outline = stroker.createStroke(roundedRect(behind, 1.6));
  const double clear = line / 2 + gap;
  const QPainterPath kept =
      outline.subtracted(roundedRect(front.adjusted(-clear, -clear, clear, clear), 1.8 + clear));
  painter.fillPath(kept, tint);

  QColor pane = tint;
  pane.setAlphaF(tint.alphaF() * 0.35F);
  painter.fillPath(roundedRect(front, 1.8), pane);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(tint, line));
  painter.drawPath(roundedRect(front, 1.8));
}

}  // namespace

void drawSymbol(QPainter& painter, const std::string& name, const QRectF& rect,
                const QColor& tint) {
  if (name != mirrorSymbol) return;
  const double side = std::min(rect.width(), rect.height());
  painter.save();
  painter.translate(rect.center() - QPointF(side / 2, side / 2));
  painter.scale(side / 16, side / 16);
  drawLeaningWindows(painter, tint);
  painter.restore();
}

}  // namespace vistrel::platform::linux_desktop
