#include "platform/linux/qt/paint/PainterContext.h"

#include <QFontMetricsF>
#include <QPainterPath>
#include <QPen>
#include <algorithm>
#include <cmath>

#include "platform/linux/qt/paint/Colors.h"
#include "platform/linux/qt/paint/Fonts.h"
#include "platform/linux/qt/paint/Symbols.h"
#include "platform/linux/qt/paint/TextHalo.h"
#include "platform/linux/qt/paint/TextLines.h"

namespace vistrel::platform::linux_desktop {

namespace {

QRectF qtRect(const Rect& rect) { return {rect.minX(), rect.minY(), rect.width(), rect.height()}; }

/// The painter without its transform, for as long as this lives.
class Untransformed {
 public:
  explicit Untransformed(QPainter& painter) : painter_(painter) {
    painter_.save();
    painter_.resetTransform();
  }
  Untransformed(const Untransformed&) = delete;
  Untransformed& operator=(const Untransformed&) = delete;
  ~Untransformed() { painter_.restore(); }

 private:
  QPainter& painter_;
};

QRectF wholeOf(const QPaintDevice& device) {
  return QRectF(QPointF(), QSizeF(device.width(), device.height()) / device.devicePixelRatio());
}

/// A single sign that is no letter and no digit sits in its box by its ink, not by the line of text
/// that it would belong to.
bool isLoneSign(const QString& text) {
  return text.size() == 1 && !text.front().isLetterOrNumber() && !text.front().isSpace();
}

}  // namespace

PainterContext::PainterContext(QPainter& painter, const QPalette& palette, const Size& whole)
    : painter_(painter), palette_(palette), whole_(whole) {
  painter_.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
}

void PainterContext::flip(double height) {
  painter_.translate(0, height);
  painter_.scale(1, -1);
}

void PainterContext::clipToRoundedRect(const Rect& rect, double cornerRadius) {
  const QRectF area = snapped(rect);
  if (area == wholeOf(*painter_.device())) return;
  QPainterPath path;
  path.addRoundedRect(area, cornerRadius, cornerRadius);
  painter_.setClipPath(painter_.worldTransform().inverted().map(path), Qt::IntersectClip);
}

void PainterContext::fillRoundedRect(const Rect& rect, double cornerRadius, Color color) {
  const QRectF area = snapped(rect);
  const Untransformed painting(painter_);
  painter_.setPen(Qt::NoPen);
  painter_.setBrush(colorOf(color));
  painter_.drawRoundedRect(area, cornerRadius, cornerRadius);
  drewOver(area);
}

void PainterContext::strokeRoundedRect(const Rect& rect, double cornerRadius, double width,
                                       Color color) {
  const QRectF frame = snapped(rect);
  const double line = wholePixels(width);
  const double half = line / 2;
  const double radius = std::max(0.0, cornerRadius - half);
  const Untransformed painting(painter_);
  painter_.setPen(QPen(colorOf(color), line));
  painter_.setBrush(Qt::NoBrush);
  painter_.drawRoundedRect(frame.adjusted(half, half, -half, -half), radius, radius);
  drewFrameOver(frame, cornerRadius, line);
}

void PainterContext::strokePath(const Path& path, double lineWidth, Color color) {
  painter_.setPen(QPen(colorOf(color), lineWidth, Qt::SolidLine, Qt::FlatCap));
  QPainterPath lines;
  for (const auto& [first, second] : path.segments) {
    lines.moveTo(first.x, first.y);
    lines.lineTo(second.x, second.y);
  }
  painter_.drawPath(lines);
  const QRectF drawn = painter_.worldTransform().mapRect(lines.boundingRect());
  drewOver(drawn.adjusted(-lineWidth, -lineWidth, lineWidth, lineWidth));
}

void PainterContext::drawText(const std::string& text, const Rect& rect, const TextStyle& style) {
  const QRectF area = untransformed(rect);
  const QStringList lines = linesOf(QString::fromStdString(text), style, area.size());
  const QFont font = qtFont(style.font);
  const QFontMetricsF metrics(font);
  const bool isSign = lines.size() == 1 && isLoneSign(lines.front());
  double top = area.center().y() - static_cast<double>(lines.size()) * metrics.height() / 2;
  std::vector<PlacedLine> placed;
  for (const QString& line : lines) {
    const QRectF ink = metrics.tightBoundingRect(line);
    const double width = isSign ? ink.width() : metrics.horizontalAdvance(line);
    const double left =
        style.alignment == TextAlignment::center ? area.center().x() - width / 2 : area.left();
    const QPointF origin = isSign ? QPointF(left - ink.left(), area.center().y() - ink.center().y())
                                  : QPointF(left, top + metrics.ascent());
    placed.push_back({line,
                      {nearestPixel(origin.x()), nearestPixel(origin.y())},
                      {left, top, width, metrics.height()}});
    top += metrics.height();
  }
  const Untransformed painting(painter_);
  painter_.setFont(font);
  drawHalo(placed);
  painter_.setPen(colorOf(style.color));
  for (const PlacedLine& line : placed) {
    painter_.drawText(line.origin, line.text);
    drewOver(line.area);
  }
}

void PainterContext::drawHalo(const std::vector<PlacedLine>& lines) {
  QRectF area;
  for (const PlacedLine& line : lines) area |= line.area;
  if (!contents_ || !contents_->rect.intersects(area)) return;
  const double pixelsPerPoint = painter_.device()->devicePixelRatio();
  area = snapped(area.adjusted(-haloReach, -haloReach, haloReach, haloReach));
  QImage letters((area.size() * pixelsPerPoint).toSize(), QImage::Format_ARGB32_Premultiplied);
  letters.setDevicePixelRatio(pixelsPerPoint);
  letters.fill(Qt::transparent);
  QPainter painter(&letters);
  painter.setFont(painter_.font());
  painter.translate(-area.topLeft());
  for (const PlacedLine& line : lines) painter.drawText(line.origin, line.text);
  painter.end();
  painter_.drawImage(area.topLeft(), haloAround(letters));
  drewOver(area);
}

void PainterContext::drawSymbol(const std::string& name, const Rect& rect, Color tint) {
  const QRectF area = untransformed(rect);
  const Untransformed painting(painter_);
  linux_desktop::drawSymbol(painter_, name, area, colorOf(tint));
  drewOver(area);
}

void PainterContext::placeContents(const Layer& layer, const Rect& rect) {
  contents_ = Contents{&layer, snapped(rect)};
  overlays_.clear();
  const Untransformed painting(painter_);
  painter_.setCompositionMode(QPainter::CompositionMode_Clear);
  painter_.fillRect(contents_->rect, Qt::transparent);
}

QRectF PainterContext::untransformed(const Rect& rect) const {
  return painter_.worldTransform().mapRect(qtRect(rect));
}

QRectF PainterContext::snapped(const Rect& rect) const { return snapped(untransformed(rect)); }

QRectF PainterContext::snapped(const QRectF& area) const {
  const QRectF device = wholeOf(*painter_.device());
  const QRectF crisp(QPointF(nearestPixel(area.left()), nearestPixel(area.top())),
                     QPointF(farEdge(area.right(), whole_.width, device.right()),
                             farEdge(area.bottom(), whole_.height, device.bottom())));
  return crisp & device;
}

double PainterContext::nearestPixel(double coordinate) const {
  const double pixelsPerPoint = painter_.device()->devicePixelRatio();
  return std::round(coordinate * pixelsPerPoint) / pixelsPerPoint;
}

double PainterContext::farEdge(double coordinate, double whole, double device) const {
  constexpr double calculation = 1e-6;
  return std::abs(coordinate - whole) < calculation ? device : nearestPixel(coordinate);
}

double PainterContext::wholePixels(double width) const {
  const double pixelsPerPoint = painter_.device()->devicePixelRatio();
  return std::max(1.0, std::floor(width * pixelsPerPoint)) / pixelsPerPoint;
}

QColor PainterContext::colorOf(const Color& color) const { return resolved(color, palette_); }

void PainterContext::drewOver(const QRectF& untransformedRect) {
  if (!contents_) return;
  const QRectF covered = untransformedRect & contents_->rect;
  if (!covered.isEmpty()) overlays_.push_back(covered);
}

void PainterContext::drewFrameOver(const QRectF& r, double cornerRadius, double width) {
  drewOver({r.left(), r.top(), r.width(), width});
  drewOver({r.left(), r.bottom() - width, r.width(), width});
  drewOver({r.left(), r.top(), width, r.height()});
  drewOver({r.right() - width, r.top(), width, r.height()});
  for (const double x : {r.left(), r.right() - cornerRadius}) {
    for (const double y : {r.top(), r.bottom() - cornerRadius}) {
      drewOver({x, y, cornerRadius, cornerRadius});
    }
  }
}

}  // namespace vistrel::platform::linux_desktop
