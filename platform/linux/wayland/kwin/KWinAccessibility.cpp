#include "platform/linux/wayland/kwin/KWinAccessibility.h"

#include <utility>
#include <variant>

namespace vistrel::platform::linux_desktop {

using enum AccessibilityError;

namespace {

using Elements = std::vector<std::shared_ptr<AccessibilityElement>>;

class NativeWindowElement final : public AccessibilityElement {
 public:
  NativeWindowElement(KWinMover& mover, WindowID window) : mover_(mover), window_(window) {}

  AccessibilityAttributeOrError copyAttributeValue(const std::string& attribute) override {
    if (attribute != accessibilityPosition) return {attributeUnsupported, {}};
    const auto position = mover_.positionOf(window_);
    if (!position) return {invalidElement, {}};
    return {success, AccessibilityValue{*position}};
  }

  AccessibilityError setAttributeValue(const std::string& attribute,
                                       const AccessibilityValue& value) override {
    if (attribute != accessibilityPosition) return attributeUnsupported;
    if (!value.point) return illegalArgument;
    return mover_.move(window_, *value.point) ? success : invalidElement;
  }

  WindowID window() const { return window_; }

 private:
  KWinMover& mover_;
  const WindowID window_;
};

/// A program that may have windows of both kinds.
class ApplicationElement final : public AccessibilityElement {
 public:
  ApplicationElement(std::shared_ptr<AccessibilityElement> x, KWinMover& mover,
                     std::int32_t processID)
      : x_(std::move(x)), mover_(mover), processID_(processID) {}

  AccessibilityAttributeOrError copyAttributeValue(const std::string& attribute) override {
    auto ofX = x_->copyAttributeValue(attribute);
    if (attribute != accessibilityWindows) return ofX;
    auto* const known = std::get_if<Elements>(&ofX.value);
    auto elements = known == nullptr ? Elements() : std::move(*known);
    for (const auto window : mover_.windowsOf(processID_)) {
      elements.push_back(std::make_shared<NativeWindowElement>(mover_, window));
    }
    return {success, std::move(elements)};
  }

  AccessibilityError setAttributeValue(const std::string& attribute,
                                       const AccessibilityValue& value) override {
    return x_->setAttributeValue(attribute, value);
  }

 private:
  const std::shared_ptr<AccessibilityElement> x_;
  KWinMover& mover_;
  const std::int32_t processID_;
};

/// For elements of X's half: what a function without state falls back to.
GetWindowNumber numberOfX = nullptr;

}  // namespace

bool KWinAccessibility::isProcessTrusted() { return x_->isProcessTrusted(); }

bool KWinAccessibility::isProcessTrustedWithOptions(bool prompt) {
  return x_->isProcessTrustedWithOptions(prompt);
}

std::shared_ptr<AccessibilityElement> KWinAccessibility::applicationElement(
    std::int32_t processID) {
  return std::make_shared<ApplicationElement>(x_->applicationElement(processID), *mover_,
                                              processID);
}

std::optional<AccessibilityValue> KWinAccessibility::makePointValue(Point point) {
  return x_->makePointValue(point);
}

GetWindowNumber KWinAccessibility::windowNumberFunctionNamed(const std::string& symbol) {
  numberOfX = x_->windowNumberFunctionNamed(symbol);
  if (numberOfX == nullptr) return nullptr;
  return [](AccessibilityElement& element, WindowID* number) {
    const auto* native = dynamic_cast<const NativeWindowElement*>(&element);
    if (native == nullptr) return numberOfX(element, number);
    *number = native->window();
    return success;
  };
}

}  // namespace vistrel::platform::linux_desktop
