#include "platform/macos/accessibility/SystemAccessibility.h"

#import <ApplicationServices/ApplicationServices.h>
#import <Foundation/Foundation.h>
#include <dlfcn.h>

#include <utility>

#include "platform/macos/CFOwned.h"
#include "platform/macos/Conversions.h"

namespace vistrel::platform::macos {

static_assert(static_cast<AXError>(AccessibilityError::success) == kAXErrorSuccess);
static_assert(static_cast<AXError>(AccessibilityError::failure) == kAXErrorFailure);
static_assert(static_cast<AXError>(AccessibilityError::illegalArgument) == kAXErrorIllegalArgument);
static_assert(static_cast<AXError>(AccessibilityError::invalidElement) == kAXErrorInvalidUIElement);
static_assert(static_cast<AXError>(AccessibilityError::cannotComplete) == kAXErrorCannotComplete);
static_assert(static_cast<AXError>(AccessibilityError::attributeUnsupported) ==
              kAXErrorAttributeUnsupported);
static_assert(static_cast<AXError>(AccessibilityError::apiDisabled) == kAXErrorAPIDisabled);
static_assert(static_cast<AXError>(AccessibilityError::noValue) == kAXErrorNoValue);

namespace {

AccessibilityError coreError(AXError error) { return static_cast<AccessibilityError>(error); }

CFOwned<AXValueRef> axValue(Point point) {
  const CGPoint native = cgPoint(point);
  return CFOwned<AXValueRef>(AXValueCreate(kAXValueTypeCGPoint, &native));
}

AccessibilityAttribute coreAttribute(CFTypeRef object);

class Element final : public AccessibilityElement {
 public:
  explicit Element(CFOwned<AXUIElementRef> reference) : reference_(std::move(reference)) {}

  AccessibilityAttributeOrError copyAttributeValue(const std::string& attribute) override {
    CFTypeRef object = nullptr;
    const AXError error = AXUIElementCopyAttributeValue(
        reference_.get(), (__bridge CFStringRef)nsString(attribute), &object);
    const CFOwned<CFTypeRef> owned(object);
    if (error != kAXErrorSuccess) return {coreError(error), {}};
    return {AccessibilityError::success, coreAttribute(object)};
  }

  AccessibilityError setAttributeValue(const std::string& attribute,
                                       const AccessibilityValue& value) override {
    const CFOwned<AXValueRef> native = value.point ? axValue(*value.point) : nullptr;
    if (!native) return AccessibilityError::illegalArgument;
    return coreError(AXUIElementSetAttributeValue(
        reference_.get(), (__bridge CFStringRef)nsString(attribute), native.get()));
  }

  AXUIElementRef reference() const { return reference_.get(); }

 private:
  const CFOwned<AXUIElementRef> reference_;
};

AccessibilityValue coreValue(AXValueRef value) {
  CGPoint point{};
  if (!AXValueGetValue(value, kAXValueTypeCGPoint, &point)) return {};
  return {corePoint(point)};
}

/// As text when not all of the array are elements.
AccessibilityAttribute coreElements(CFArrayRef array) {
  std::vector<std::shared_ptr<AccessibilityElement>> elements;
  for (id object in (__bridge NSArray*)array) {
    const auto reference = (__bridge AXUIElementRef)object;
    if (CFGetTypeID(reference) != AXUIElementGetTypeID()) return std::string("array");
    elements.push_back(std::make_shared<Element>(cfRetained(reference)));
  }
  return elements;
}

AccessibilityAttribute coreAttribute(CFTypeRef object) {
  if (object == nullptr) return {};
  const CFTypeID type = CFGetTypeID(object);
  if (type == AXValueGetTypeID()) return coreValue(static_cast<AXValueRef>(object));
  if (type == CFArrayGetTypeID()) return coreElements(static_cast<CFArrayRef>(object));
  return std::string("object");
}

using NativeGetWindow = AXError (*)(AXUIElementRef element, CGWindowID* number);
/// Null until it was looked up and found.
NativeGetWindow nativeGetWindow = nullptr;

}  // namespace

bool SystemAccessibility::isProcessTrusted() { return AXIsProcessTrusted() != 0; }

bool SystemAccessibility::isProcessTrustedWithOptions(bool prompt) {
  const id key = (__bridge id)kAXTrustedCheckOptionPrompt;
  NSDictionary* const options = @{key : [NSNumber numberWithBool:prompt]};
  return AXIsProcessTrustedWithOptions((__bridge CFDictionaryRef)options) != 0;
}

std::shared_ptr<AccessibilityElement> SystemAccessibility::applicationElement(
    std::int32_t processID) {
  return std::make_shared<Element>(
      CFOwned<AXUIElementRef>(AXUIElementCreateApplication(processID)));
}

std::optional<AccessibilityValue> SystemAccessibility::makePointValue(Point point) {
  if (!axValue(point)) return std::nullopt;
  return AccessibilityValue{point};
}

GetWindowNumber SystemAccessibility::windowNumberFunctionNamed(const std::string& symbol) {
  nativeGetWindow = reinterpret_cast<NativeGetWindow>(dlsym(RTLD_DEFAULT, symbol.c_str()));
  if (nativeGetWindow == nullptr) return nullptr;
  return [](AccessibilityElement& element, WindowID* number) {
    return coreError(nativeGetWindow(static_cast<Element&>(element).reference(), number));
  };
}

}  // namespace vistrel::platform::macos
