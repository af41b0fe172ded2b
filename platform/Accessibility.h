#pragma once

namespace vistrel::platform {

/// What a view is to people who have the screen read to them.
enum class AccessibilityRole {
  none,  // means nothing by itself; what it holds may
  staticText,
  status,  // text that is read out when it appears
  button,
  image,
  growArea,  // resizes its window
};

/// What such people do to a view instead of clicking or dragging it.
enum class AccessibilityAction { press, increment, decrement };

}  // namespace vistrel::platform
