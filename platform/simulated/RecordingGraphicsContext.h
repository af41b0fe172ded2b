#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/GraphicsContext.h"
#include "platform/Image.h"
#include "platform/Layer.h"

namespace vistrel::platform::simulated {

/// One thing that was drawn, in the coordinates of the outermost context: y downwards.
struct DrawCommand {
  enum class Kind { fill, stroke, path, text, symbol, contents };

  Kind kind;
  Rect rect;  // of a path, its bounds
  std::optional<Rect> clip;
  Color color;  // of text, its style's; of contents, the background
  double cornerRadius = 0;
  double lineWidth = 0;
  std::string text;  // or the symbol's name
  TextStyle style;
  Path path;
  std::shared_ptr<const Image> image;  // of contents
  ContentsGravity gravity = ContentsGravity::resize;
};

/// Remembers what is drawn.
class RecordingGraphicsContext : public TreeGraphicsContext {
 public:
  const std::vector<DrawCommand>& commands() const { return commands_; }

  void save() override;
  void restore() override;
  void translate(Point origin) override;
  void flip(double height) override;
  void clipToRoundedRect(const Rect& rect, double cornerRadius) override;
  void fillRoundedRect(const Rect& rect, double cornerRadius, Color color) override;
  void strokeRoundedRect(const Rect& rect, double cornerRadius, double width, Color color) override;
  void strokePath(const Path& path, double lineWidth, Color color) override;
  void drawText(const std::string& text, const Rect& rect, const TextStyle& style) override;
  void drawSymbol(const std::string& name, const Rect& rect, Color tint) override;
  void placeContents(const Layer& layer, const Rect& rect) override;

 private:
  /// Outer y = originY + ySign × y.
  struct State {
    Point origin;
    double ySign = 1;
    std::optional<Rect> clip;
  };

  Point toOuter(Point point) const;
  Rect toOuter(const Rect& rect) const;
  DrawCommand& add(DrawCommand::Kind kind, const Rect& rect, Color color);

  State state_;
  std::vector<State> saved_;
  std::vector<DrawCommand> commands_;
};

/// The colour at a point of what was drawn: fills and pictures laid over one another, square
/// corners; lines, text and symbols are left out. Pictures are sampled at the nearest pixel.
Color colorAt(const std::vector<DrawCommand>& commands, Point point);

}  // namespace vistrel::platform::simulated
