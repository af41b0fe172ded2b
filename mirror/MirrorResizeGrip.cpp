#include "mirror/MirrorResizeGrip.h"

#include <algorithm>

#include "platform/Window.h"

namespace vistrel {

using platform::AccessibilityAction;
using platform::AccessibilityRole;
using platform::Event;
using platform::Point;
using platform::Rect;

namespace {

/// How much wider and taller one step makes a panel. Points.
constexpr double accessibilityStep = 40;

}  // namespace

MirrorResizeGrip::MirrorResizeGrip(const Rect& frame) : View(frame) {
  setAccessibilityRole(AccessibilityRole::growArea);
  setAccessibilityLabel("Resize");
}

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
  const Point mouse = Event::mouseLocation();
  resizePanel(startFrame_, mouse.x - startMouse_.x, startMouse_.y - mouse.y);
}

void MirrorResizeGrip::mouseUp(const Event& /*event*/) {}

std::vector<AccessibilityAction> MirrorResizeGrip::accessibilityActions() const {
  return {AccessibilityAction::increment, AccessibilityAction::decrement};
}

void MirrorResizeGrip::accessibilityPerform(AccessibilityAction action) {
  if (window() == nullptr) return;
  const double step =
      action == AccessibilityAction::increment ? accessibilityStep : -accessibilityStep;
  resizePanel(window()->frame(), step, step);
}

void MirrorResizeGrip::resizePanel(const Rect& start, double wider, double taller) {
  platform::Window* panel = window();
  if (panel == nullptr) return;
  const double width = std::max(start.width() + wider, minSize_.width);
  const double height = std::max(start.height() + taller, minSize_.height);
  panel->setFrame(platform::rect(start.minX(), start.maxY() - height, width, height),
                  platform::Redisplay::atOnce);
}

}  // namespace vistrel
