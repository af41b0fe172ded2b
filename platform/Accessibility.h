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

/// What such people can do to a view. Without a pointer these are all there is to dragging.
enum class AccessibilityAction { press, increment, decrement };

}  // namespace vistrel::platform
