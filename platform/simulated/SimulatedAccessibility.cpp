#include "platform/simulated/SimulatedAccessibility.h"

#include <algorithm>
#include <utility>

namespace vistrel::platform::simulated {

using enum AccessibilityError;

class SimulatedAccessibility::WindowElement : public AccessibilityElement {
 public:
  WindowElement(SimulatedAccessibility& accessibility, WindowID window)
      : accessibility_(accessibility), window_(window) {}

  AccessibilityAttributeOrError copyAttributeValue(const std::string& attribute) override {
    if (attribute != accessibilityPosition) return {attributeUnsupported, {}};
    return accessibility_.positionOf(window_);
  }

  AccessibilityError setAttributeValue(const std::string& attribute,
                                       const AccessibilityValue& value) override {
    if (attribute != accessibilityPosition) return attributeUnsupported;
    if (!value.point) return illegalArgument;
    return accessibility_.move(window_, *value.point);
  }

  AccessibilityError number(WindowID* number) const {
    if (accessibility_.scriptOf(window_).hidesNumber) return failure;
    *number = window_;
    return success;
  }

 private:
  SimulatedAccessibility& accessibility_;
  const WindowID window_;
};

class SimulatedAccessibility::ApplicationElement : public AccessibilityElement {
 public:
  ApplicationElement(SimulatedAccessibility& accessibility, std::int32_t processID)
      : accessibility_(accessibility), processID_(processID) {}

  AccessibilityAttributeOrError copyAttributeValue(const std::string& attribute) override {
    if (attribute != accessibilityWindows) return {attributeUnsupported, {}};
    return accessibility_.windowsOf(processID_);
  }

  AccessibilityError setAttributeValue(const std::string&, const AccessibilityValue&) override {
    return attributeUnsupported;
  }

 private:
  SimulatedAccessibility& accessibility_;
  const std::int32_t processID_;
};

void SimulatedAccessibility::scriptWindowsOf(std::int32_t processID,
                                             AccessibilityAttributeOrError answer) {
  windowsAnswers_[processID] = std::move(answer);
}

bool SimulatedAccessibility::isProcessTrustedWithOptions(bool prompt) {
  if (prompt && !trusted_) {
    ++promptCount_;
    if (whenPrompted_) whenPrompted_();
  }
  return trusted_;
}

std::shared_ptr<AccessibilityElement> SimulatedAccessibility::applicationElement(
    std::int32_t processID) {
  return std::make_shared<ApplicationElement>(*this, processID);
}

std::optional<AccessibilityValue> SimulatedAccessibility::makePointValue(Point point) {
  if (failsPointValues_) return std::nullopt;
  return AccessibilityValue{point};
}

GetWindowNumber SimulatedAccessibility::windowNumberFunctionNamed(const std::string& symbol) {
  if (symbol != "_AXUIElementGetWindow" || !hasWindowNumberFunction_) return nullptr;
  return [](AccessibilityElement& element, WindowID* number) {
    const auto* window = dynamic_cast<const WindowElement*>(&element);
    return window == nullptr ? illegalArgument : window->number(number);
  };
}

AccessibleWindowScript SimulatedAccessibility::scriptOf(WindowID window) const {
  const auto found = scripts_.find(window);
  return found == scripts_.end() ? AccessibleWindowScript() : found->second;
}

WindowRecord SimulatedAccessibility::recordOf(WindowID window) const {
  for (const WindowRecord& each : capture_.windows()) {
    if (each->windowID == window) return each;
  }
  return nullptr;
}

AccessibilityAttributeOrError SimulatedAccessibility::windowsOf(std::int32_t processID) {
  const auto scripted = windowsAnswers_.find(processID);
  if (scripted != windowsAnswers_.end()) return scripted->second;
  std::vector<std::shared_ptr<AccessibilityElement>> elements;
  for (const WindowRecord& window : capture_.windows()) {
    if (!window->owningApplication || window->owningApplication->processID != processID) continue;
    for (int i = 0; i < scriptOf(window->windowID).timesListed; ++i) {
      elements.push_back(std::make_shared<WindowElement>(*this, window->windowID));
    }
  }
  return {success, std::move(elements)};
}

AccessibilityAttributeOrError SimulatedAccessibility::positionOf(WindowID window) {
  const auto script = scriptOf(window);
  if (script.position) return *script.position;
  const auto record = recordOf(window);
  if (!record) return {invalidElement, {}};
  return {success, AccessibilityValue{record->frame.origin}};
}

AccessibilityError SimulatedAccessibility::move(WindowID window, Point position) {
  journal_.add("AXPosition of " + std::to_string(window) + ": " + inWords(position.x) + "," +
               inWords(position.y));
  if (whenTold_) whenTold_(window);
  if (!recordOf(window)) return invalidElement;
  if (scriptOf(window).refusesMoves) return cannotComplete;
  capture_.changeWindow(window, [&](ShareableWindow& facts) { facts.frame.origin = position; });
  return success;
}

}  // namespace vistrel::platform::simulated
