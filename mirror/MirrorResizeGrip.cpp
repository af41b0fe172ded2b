#include "mirror/MirrorResizeGrip.h"

#include <algorithm>

#include "platform/Window.h"

namespace vistrel {

using platform::Event;
using platform::Point;
using platform::Rect;

void MirrorResizeGrip::resetCursorRects() { addCursorRect(bounds(), platform::Cursor::crosshair); }

void MirrorResizeGrip::draw(platform::GraphicsContext& context) {
  constexpr double firstStroke = 3;
  constexpr double strokeStep = 4;
  constexpr double inset = 2;
  platform::Path strokes;
  const Rect area = bounds();
  for (int i = 0; firstStroke + i * strokeStep <= area.width() - inset; ++i) {
    const double d = firstStroke + i * strokeStep;
    strokes.segments.push_back({{area.maxX() - d, inset}, {area.maxX() - inset, d}});
  }
  context.strokePath(strokes, 1, platform::Color::white(0.35));
}

void MirrorResizeGrip::mouseDown(const Event& /*event*/) {
  startMouse_ = Event::mouseLocation();
  startFrame_ = window() != nullptr ? window()->frame() : Rect{};
}

void MirrorResizeGrip::mouseDragged(const Event& /*event*/) {
  platform::Window* panel = window();
  if (panel == nullptr) return;
  const Point mouse = Event::mouseLocation();
  const double width = std::max(startFrame_.width() + (mouse.x - startMouse_.x), minSize_.width);
  const double height = std::max(startFrame_.height() - (mouse.y - startMouse_.y), minSize_.height);
  panel->setFrame(platform::rect(startFrame_.minX(), startFrame_.maxY() - height, width, height),
                  true);
}

}  // namespace vistrel
