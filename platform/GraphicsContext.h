#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/Color.h"
#include "platform/Geometry.h"

namespace vistrel::platform {

class Layer;
class View;

enum class FontWeight { regular, semibold, bold };

/// The desktop's own interface font at a size in points.
struct Font {
  double pointSize = 13;
  FontWeight weight = FontWeight::regular;

  friend bool operator==(const Font&, const Font&) = default;
};

enum class TextAlignment { left, center };
/// Raw values are AppKit's NSLineBreakMode.
enum class LineBreakMode { wordWrapping = 0, truncatingTail = 4 };

struct TextStyle {
  Font font;
  Color color;
  TextAlignment alignment = TextAlignment::left;
  LineBreakMode lineBreakMode = LineBreakMode::truncatingTail;
  /// 0 means as many as fit.
  int maximumNumberOfLines = 1;
};

/// Straight segments, each from `first` to `second`.
struct Path {
  std::vector<std::pair<Point, Point>> segments;
};

/// What a view draws with. Coordinates are those of the view being drawn.
class GraphicsContext {
 public:
  virtual ~GraphicsContext() = default;

  virtual void strokePath(const Path& path, double lineWidth, Color color) = 0;
  /// Text upright in `rect` whichever way y grows, vertically centred.
  virtual void drawText(const std::string& text, const Rect& rect, const TextStyle& style) = 0;
  /// A symbol by its name ("rectangle.on.rectangle.angled"), scaled down to fit, in one colour.
  virtual void drawSymbol(const std::string& name, const Rect& rect, Color tint) = 0;
};

/// What `paint` needs besides, on backends that have it paint a whole tree: it moves the origin and
/// flips as it walks down.
class TreeGraphicsContext : public GraphicsContext {
 public:
  virtual void save() = 0;
  virtual void restore() = 0;
  virtual void translate(Point origin) = 0;
  /// Mirrors y within a view of `height`, so that y grows the other way from there on.
  virtual void flip(double height) = 0;
  virtual void clipToRoundedRect(const Rect& rect, double cornerRadius) = 0;

  virtual void fillRoundedRect(const Rect& rect, double cornerRadius, Color color) = 0;
  /// A border of `width` inside `rect`.
  virtual void strokeRoundedRect(const Rect& rect, double cornerRadius, double width,
                                 Color color) = 0;
  /// Leaves `rect` to the contents of `layer`, over its background colour; what is drawn later lies
  /// over the contents.
  virtual void placeContents(const Layer& layer, const Rect& rect) = 0;
};

/// Paints `view` and all below it into a context whose origin is the top-left of the view's frame,
/// y downwards: layer background or contents, own drawing, subviews, border. Hidden views are left
/// out. Main thread.
void paint(View& view, TreeGraphicsContext& context);

}  // namespace vistrel::platform
