#include "platform/linux/x11/parking/X11Accessibility.h"

#include <utility>

#include "platform/linux/x11/manager/ClientWindows.h"
#include "platform/linux/x11/manager/Manager.h"

namespace vistrel::platform::linux_desktop {

using enum AccessibilityError;

class X11Accessibility::WindowElement final : public AccessibilityElement {
 public:
  WindowElement(X11Accessibility& accessibility, xcb_window_t window)
      : accessibility_(accessibility), window_(window) {}

  AccessibilityAttributeOrError copyAttributeValue(const std::string& attribute) override {
    if (attribute != accessibilityPosition) return {attributeUnsupported, {}};
    const auto position = accessibility_.windows_->positionOf(window_);
    if (!position) return {invalidElement, {}};
    return {success, AccessibilityValue{*position}};
  }

  AccessibilityError setAttributeValue(const std::string& attribute,
                                       const AccessibilityValue& value) override {
    if (attribute != accessibilityPosition) return attributeUnsupported;
    if (!value.point) return illegalArgument;
    // What is parked goes home without a manager too.
    const bool isParked = accessibility_.windows_->outcomeFor(window_).has_value();
    if (!isParked && !accessibility_.isProcessTrusted()) return apiDisabled;
    return accessibility_.windows_->move(window_, *value.point) ? success : invalidElement;
  }

  xcb_window_t window() const { return window_; }

 private:
  X11Accessibility& accessibility_;
  const xcb_window_t window_;
};

class X11Accessibility::ApplicationElement final : public AccessibilityElement {
 public:
  ApplicationElement(X11Accessibility& accessibility, std::int32_t processID)
      : accessibility_(accessibility), processID_(processID) {}

  AccessibilityAttributeOrError copyAttributeValue(const std::string& attribute) override {
    if (attribute != accessibilityWindows) return {attributeUnsupported, {}};
    if (!accessibility_.isProcessTrusted()) return {apiDisabled, {}};
    std::vector<std::shared_ptr<AccessibilityElement>> elements;
    for (const auto window : clientWindowsOf(*accessibility_.connection_, processID_)) {
      elements.push_back(std::make_shared<WindowElement>(accessibility_, window));
    }
    return {success, std::move(elements)};
  }

  AccessibilityError setAttributeValue(const std::string&, const AccessibilityValue&) override {
    return attributeUnsupported;
  }

 private:
  X11Accessibility& accessibility_;
  const std::int32_t processID_;
};

bool X11Accessibility::isProcessTrusted() { return hasManager(*connection_); }

bool X11Accessibility::isProcessTrustedWithOptions(bool /*prompt*/) { return isProcessTrusted(); }

std::shared_ptr<AccessibilityElement> X11Accessibility::applicationElement(std::int32_t processID) {
  return std::make_shared<ApplicationElement>(*this, processID);
}

std::optional<AccessibilityValue> X11Accessibility::makePointValue(Point point) {
  return AccessibilityValue{point};
}

GetWindowNumber X11Accessibility::windowNumberFunctionNamed(const std::string& symbol) {
  if (symbol != "_AXUIElementGetWindow") return nullptr;
  return [](AccessibilityElement& element, WindowID* number) {
    const auto* window = dynamic_cast<const WindowElement*>(&element);
    if (window == nullptr) return illegalArgument;
    *number = window->window();
    return success;
  };
}

}  // namespace vistrel::platform::linux_desktop
