#pragma once

#include <cstdint>

#include "platform/Geometry.h"

namespace vistrel::platform {

/// Raw values are AppKit's NSEventModifierFlags. Where the keyboard has no Command key, Control
/// stands in for it and is reported as `command`.
enum ModifierFlags : std::uint64_t {
  modifierNone = 0,
  modifierShift = 1U << 17U,
  modifierControl = 1U << 18U,
  modifierOption = 1U << 19U,
  modifierCommand = 1U << 20U,
};

enum class EventType {
  leftMouseDown,
  leftMouseDragged,
  leftMouseUp,
  /// Asks for a context menu (`Window::menuForEvent`), also where keys do.
  rightMouseDown,
};

struct Event {
  EventType type = EventType::leftMouseDown;
  /// In the window's content view's space before flipping: origin at the bottom-left.
  Point locationInWindow;
  std::uint64_t modifierFlags = modifierNone;
  /// 1 for a single click, 2 for the second press of a double click, and so on.
  int clickCount = 0;

  /// Where the pointer is, in screen space; while an event is being dispatched, where it was when
  /// that event happened. Main thread.
  static Point mouseLocation();
};

}  // namespace vistrel::platform
