#include "parking/WindowParker.h"

#include <variant>
#include <vector>

#include "platform/Workspace.h"

namespace vistrel::WindowParker {

using platform::AccessibilityElement;
using platform::AccessibilityError;
using platform::AccessibilityValue;
using platform::WindowID;

namespace {

/// Looked up once, since a system does not change while the program runs. Null when it is missing.
platform::GetWindowNumber getWindow() {
  static const auto function = platform::windowNumberFunctionNamed("_AXUIElementGetWindow");
  return function;
}

/// What the attribute holds; none when it cannot be read or is of another type.
template <class T>
std::optional<T> attribute(AccessibilityElement& element, const char* name) {
  const auto [error, value] = element.copyAttributeValue(name);
  const T* const content = std::get_if<T>(&value);
  if (error != AccessibilityError::success || content == nullptr) return std::nullopt;
  return *content;
}

}  // namespace

std::shared_ptr<AccessibilityElement> axWindow(WindowID windowID, std::int32_t pid) {
  if (getWindow() == nullptr) return nullptr;
  const auto application = AccessibilityElement::forApplication(pid);
  using Windows = std::vector<std::shared_ptr<AccessibilityElement>>;
  const auto windows = attribute<Windows>(*application, platform::accessibilityWindows);
  if (!windows) return nullptr;
  for (const auto& window : *windows) {
    WindowID number = 0;
    if (getWindow()(*window, &number) == AccessibilityError::success && number == windowID) {
      return window;
    }
  }
  return nullptr;
}

std::optional<platform::Point> position(AccessibilityElement& window) {
  const auto value = attribute<AccessibilityValue>(window, platform::accessibilityPosition);
  if (!value) return std::nullopt;
  // A value of another type than a point leaves the point as it began.
  return value->point.value_or(platform::Point());
}

void move(AccessibilityElement& window, platform::Point position) {
  const auto value = platform::makePointValue(position);
  if (value) window.setAttributeValue(platform::accessibilityPosition, *value);
}

void openAccessibilitySettings() {
  platform::openURL(
      "x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility");
}

}  // namespace vistrel::WindowParker
