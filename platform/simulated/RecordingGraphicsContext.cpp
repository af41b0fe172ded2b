#include "platform/simulated/RecordingGraphicsContext.h"

#include <algorithm>
#include <cmath>

#include "platform/simulated/SimulatedFrames.h"

namespace vistrel::platform::simulated {
namespace {

Rect bounds(const Path& path) {
  if (path.segments.empty()) return {};
  Point low = path.segments.front().first;
  Point high = low;
  for (const auto& [first, second] : path.segments) {
    low = {std::min({low.x, first.x, second.x}), std::min({low.y, first.y, second.y})};
    high = {std::max({high.x, first.x, second.x}), std::max({high.y, first.y, second.y})};
  }
  return rect(low.x, low.y, high.x - low.x, high.y - low.y);
}

Color over(Color top, Color bottom) {
  const auto mix = [&](double t, double b) { return t * top.alpha + b * (1 - top.alpha); };
  return {mix(top.red, bottom.red), mix(top.green, bottom.green), mix(top.blue, bottom.blue),
          top.alpha + bottom.alpha * (1 - top.alpha)};
}

/// Where the picture lies within the layer.
Rect pictureRect(const DrawCommand& command, const HostPixelBuffer& pixels) {
  if (command.gravity == ContentsGravity::resize) return command.rect;
  const auto width = static_cast<double>(pixels.width());
  const auto height = static_cast<double>(pixels.height());
  const double scale = std::min(command.rect.width() / width, command.rect.height() / height);
  return rect(command.rect.midX() - width * scale / 2, command.rect.midY() - height * scale / 2,
              width * scale, height * scale);
}

Color pictureColor(const DrawCommand& command, Point point) {
  const auto image = std::dynamic_pointer_cast<const SimulatedImage>(command.image);
  if (!image) return command.color;
  const HostPixelBuffer& pixels = image->pixels();
  const Rect shown = pictureRect(command, pixels);
  if (!shown.contains(point)) return command.color;
  const auto nearest = [](double fraction, std::int64_t count) {
    const auto index = static_cast<std::int64_t>(fraction * static_cast<double>(count));
    return std::clamp<std::int64_t>(index, 0, count - 1);
  };
  const std::int64_t x = nearest((point.x - shown.minX()) / shown.width(), pixels.width());
  const std::int64_t y = nearest((point.y - shown.minY()) / shown.height(), pixels.height());
  const std::uint8_t* pixel = pixels.bytes().data() + y * pixels.bytesPerRow() + x * 4;
  return over(Color::srgb(pixel[2] / 255.0, pixel[1] / 255.0, pixel[0] / 255.0, pixel[3] / 255.0),
              command.color);
}

}  // namespace

void RecordingGraphicsContext::save() { saved_.push_back(state_); }

void RecordingGraphicsContext::restore() {
  state_ = saved_.back();
  saved_.pop_back();
}

Point RecordingGraphicsContext::toOuter(Point point) const {
  return {state_.origin.x + point.x, state_.origin.y + state_.ySign * point.y};
}

Rect RecordingGraphicsContext::toOuter(const Rect& rect) const {
  const Point a = toOuter(rect.origin);
  const double y = state_.ySign > 0 ? a.y : a.y - rect.height();
  return Rect{{a.x, y}, rect.size};
}

void RecordingGraphicsContext::translate(Point origin) { state_.origin = toOuter(origin); }

void RecordingGraphicsContext::flip(double height) {
  state_.origin = toOuter(Point{0, height});
  state_.ySign = -state_.ySign;
}

void RecordingGraphicsContext::clipToRoundedRect(const Rect& rect, double /*cornerRadius*/) {
  const Rect clip = toOuter(rect);
  state_.clip = state_.clip ? intersection(*state_.clip, clip) : clip;
}

DrawCommand& RecordingGraphicsContext::add(DrawCommand::Kind kind, const Rect& rect, Color color) {
  commands_.push_back({.kind = kind, .rect = toOuter(rect), .clip = state_.clip, .color = color});
  return commands_.back();
}

void RecordingGraphicsContext::fillRoundedRect(const Rect& rect, double cornerRadius, Color color) {
  add(DrawCommand::Kind::fill, rect, color).cornerRadius = cornerRadius;
}

void RecordingGraphicsContext::strokeRoundedRect(const Rect& rect, double cornerRadius,
                                                 double width, Color color) {
  DrawCommand& command = add(DrawCommand::Kind::stroke, rect, color);
  command.cornerRadius = cornerRadius;
  command.lineWidth = width;
}

void RecordingGraphicsContext::strokePath(const Path& path, double lineWidth, Color color) {
  DrawCommand& command = add(DrawCommand::Kind::path, bounds(path), color);
  command.lineWidth = lineWidth;
  for (const auto& [first, second] : path.segments) {
    command.path.segments.emplace_back(toOuter(first), toOuter(second));
  }
}

void RecordingGraphicsContext::drawText(const std::string& text, const Rect& rect,
                                        const TextStyle& style) {
  DrawCommand& command = add(DrawCommand::Kind::text, rect, style.color);
  command.text = text;
  command.style = style;
}

void RecordingGraphicsContext::drawSymbol(const std::string& name, const Rect& rect, Color tint) {
  add(DrawCommand::Kind::symbol, rect, tint).text = name;
}

void RecordingGraphicsContext::placeContents(const Layer& layer, const Rect& rect) {
  DrawCommand& command =
      add(DrawCommand::Kind::contents, rect, layer.backgroundColor().value_or(Color::clear()));
  command.image = layer.contents();
  command.gravity = layer.contentsGravity();
}

Color colorAt(const std::vector<DrawCommand>& commands, Point point) {
  Color result = Color::clear();
  for (const DrawCommand& command : commands) {
    if (!command.rect.contains(point) || (command.clip && !command.clip->contains(point))) continue;
    if (command.kind == DrawCommand::Kind::fill) result = over(command.color, result);
    if (command.kind == DrawCommand::Kind::contents) {
      result = over(pictureColor(command, point), result);
    }
  }
  return result;
}

}  // namespace vistrel::platform::simulated
