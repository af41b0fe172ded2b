#pragma once

#include <QPainter>
#include <QPalette>
#include <QRectF>
#include <optional>
#include <string>
#include <vector>

#include "platform/GraphicsContext.h"

namespace vistrel::platform::linux_desktop {

/// Draws with the toolkit's painter, and keeps account of where a layer's contents are to lie and
/// what was drawn over them. Rectangles that it gives are those of the painter's own untransformed
/// space: points, origin at the top-left, y downwards.
class PainterContext final : public TreeGraphicsContext {
 public:
  /// System colours are taken in terms of `palette`. `painter` must be fresh and outlive this. What
  /// is painted is `whole` large, in points, and its far edges are those of the painter's device:
  /// the toolkit makes windows of its own whole points, which may be a pixel more or less.
  PainterContext(QPainter& painter, const QPalette& palette, const Size& whole);

  void save() override { painter_.save(); }
  void restore() override { painter_.restore(); }
  void translate(Point origin) override { painter_.translate(origin.x, origin.y); }
  void flip(double height) override;
  /// Not for the painter's whole device: whoever shows that rounds its corners, and a second time
  /// would thin their edge.
  void clipToRoundedRect(const Rect& rect, double cornerRadius) override;
  void fillRoundedRect(const Rect& rect, double cornerRadius, Color color) override;
  void strokeRoundedRect(const Rect& rect, double cornerRadius, double width, Color color) override;
  void strokePath(const Path& path, double lineWidth, Color color) override;
  void drawText(const std::string& text, const Rect& rect, const TextStyle& style) override;
  void drawSymbol(const std::string& name, const Rect& rect, Color tint) override;
  void placeContents(const Layer& layer, const Rect& rect) override;

  struct Contents {
    const Layer* layer;
    QRectF rect;
  };
  const std::optional<Contents>& contents() const { return contents_; }
  /// Inside the contents' rectangle.
  const std::vector<QRectF>& overlays() const { return overlays_; }

 private:
  struct PlacedLine {
    QString text;
    QPointF origin;  // on its baseline
    QRectF area;
  };

  /// Of lines over the contents, which may be of any colour; none of others. In the painter's font.
  void drawHalo(const std::vector<PlacedLine>& lines);
  QRectF untransformed(const Rect& rect) const;
  /// The same with its edges on the nearest pixels of the device, so that they are crisp whatever
  /// the points.
  QRectF snapped(const Rect& rect) const;
  QRectF snapped(const QRectF& untransformedRect) const;
  double nearestPixel(double coordinate) const;
  /// The same for a right or lower edge.
  double farEdge(double coordinate, double whole, double device) const;
  /// A line's width without a blurred edge; thinner rather than bolder.
  double wholePixels(double width) const;
  QColor colorOf(const Color& color) const;
  void drewOver(const QRectF& untransformedRect);
  void drewFrameOver(const QRectF& untransformedRect, double cornerRadius, double width);

  QPainter& painter_;
  const QPalette palette_;
  const Size whole_;
  std::optional<Contents> contents_;
  std::vector<QRectF> overlays_;
};

}  // namespace vistrel::platform::linux_desktop
