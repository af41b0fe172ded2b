#include "mirror/MirrorCardView.h"

#include <cmath>

#include "platform/Menu.h"
#include "platform/Window.h"

namespace vistrel {

using platform::Event;
using platform::Point;
using platform::Rect;

namespace {

/// How far, as |dx| + |dy| in points, the pointer may move in a click.
constexpr double clickSlop = 3;

}  // namespace

void MirrorCardView::layout() {
  View::layout();
  if (onLayout) onLayout();
}

std::shared_ptr<platform::Menu> MirrorCardView::menuForEvent(const Event& /*event*/) {
  return menuProvider ? menuProvider() : nullptr;
}

void MirrorCardView::mouseDown(const Event& /*event*/) {
  downMouse_ = Event::mouseLocation();
  downOrigin_ = window() != nullptr ? window()->frame().origin : Point{};
  dragged_ = false;
}

void MirrorCardView::mouseDragged(const Event& event) {
  platform::Window* panel = window();
  if (panel == nullptr) return;
  const Point mouse = Event::mouseLocation();
  const double dx = mouse.x - downMouse_.x;
  const double dy = mouse.y - downMouse_.y;
  if (std::abs(dx) + std::abs(dy) > clickSlop) dragged_ = true;
  Rect proposed{{downOrigin_.x + dx, downOrigin_.y + dy}, panel->frame().size};
  const bool isFree = (event.modifierFlags & platform::modifierCommand) != 0;
  if (!isFree && snap) proposed.origin = snap(proposed).origin;
  panel->setFrameOrigin(proposed.origin);
}

void MirrorCardView::mouseUp(const Event& event) {
  if (!dragged_ && event.clickCount == 2 && onDoubleClick) onDoubleClick();
}

}  // namespace vistrel
