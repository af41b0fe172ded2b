#import <ApplicationServices/ApplicationServices.h>
#import <Foundation/Foundation.h>

#include <cstring>
#include <string>

#include "tests/macos/fakes/Recorder.h"
#include "tests/macos/fakes/World.h"

using namespace vistrel;

/// A program or, with a number, a window of it.
@interface VLElement : NSObject {
 @public
  pid_t _processID;
  CGWindowID _windowID;
}
@end

@implementation VLElement
@end

@interface VLPointValue : NSObject {
 @public
  CGPoint _point;
}
@end

@implementation VLPointValue
@end

namespace {

VLElement* elementOf(AXUIElementRef reference) { return (__bridge VLElement*)reference; }

VLElement* makeElement(pid_t processID, CGWindowID windowID) {
  VLElement* const element = [[VLElement alloc] init];
  element->_processID = processID;
  element->_windowID = windowID;
  return element;
}

/// Null for one that has gone.
fake::SourceWindow* windowOf(AXUIElementRef element) {
  for (fake::SourceWindow& window : fake::world().desktop().windows) {
    if (window.id == elementOf(element)->_windowID) return &window;
  }
  return nullptr;
}

NSArray* windowsOf(pid_t processID) {
  NSMutableArray* const elements = [NSMutableArray array];
  for (const fake::SourceWindow& window : fake::world().desktop().windows) {
    if (window.processID == processID && window.isAmongItsWindows) {
      [elements addObject:makeElement(processID, window.id)];
    }
  }
  return elements;
}

AXValueRef makePoint(CGPoint point) {
  VLPointValue* const value = [[VLPointValue alloc] init];
  value->_point = point;
  return (__bridge_retained AXValueRef)value;
}

CFTypeID typeOf(Class type) { return reinterpret_cast<CFTypeID>((__bridge void*)type); }

bool isText(CFStringRef text, const char* wanted) {
  return std::strcmp(((__bridge NSString*)text).UTF8String, wanted) == 0;
}

AXError getWindowNumber(AXUIElementRef element, CGWindowID* number) {
  if (windowOf(element) == nullptr) return kAXErrorInvalidUIElement;
  *number = elementOf(element)->_windowID;
  return kAXErrorSuccess;
}

}  // namespace

extern "C" {

/// For the backend, as `dlsym`.
void* vistrelDlsym(void* /*handle*/, const char* symbol) {
  const bool isKnown = fake::world().desktop().tellsWindowNumbers &&
                       std::strcmp(symbol, "_AXUIElementGetWindow") == 0;
  return isKnown ? reinterpret_cast<void*>(&getWindowNumber) : nullptr;
}

const CFStringRef kAXTrustedCheckOptionPrompt =
    (__bridge CFStringRef) @"AXTrustedCheckOptionPrompt";

Boolean AXIsProcessTrusted() { return fake::world().desktop().isAccessibilityAllowed; }

Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options) {
  const bool prompts =
      static_cast<NSNumber*>(((__bridge NSDictionary*)options)[@"AXTrustedCheckOptionPrompt"])
          .longLongValue != 0;
  fake::note(std::string("AXIsProcessTrustedWithOptions prompt:") + (prompts ? "1" : "0"));
  return AXIsProcessTrusted();
}

AXUIElementRef AXUIElementCreateApplication(pid_t processID) {
  return (__bridge_retained AXUIElementRef)makeElement(processID, 0);
}

CFTypeID AXUIElementGetTypeID() { return typeOf([VLElement class]); }

AXError AXUIElementCopyAttributeValue(AXUIElementRef element, CFStringRef attribute,
                                      CFTypeRef* value) {
  if (!AXIsProcessTrusted()) return kAXErrorAPIDisabled;
  if (elementOf(element)->_windowID == 0) {
    if (!isText(attribute, "AXWindows")) return kAXErrorAttributeUnsupported;
    *value = (__bridge_retained CFTypeRef)windowsOf(elementOf(element)->_processID);
    return kAXErrorSuccess;
  }
  const fake::SourceWindow* const window = windowOf(element);
  if (window == nullptr) return kAXErrorInvalidUIElement;
  if (!isText(attribute, "AXPosition")) return kAXErrorAttributeUnsupported;
  if (!window->tellsItsPosition) return kAXErrorCannotComplete;
  *value = makePoint(window->frame.origin);
  return kAXErrorSuccess;
}

AXError AXUIElementSetAttributeValue(AXUIElementRef element, CFStringRef attribute,
                                     CFTypeRef value) {
  CGPoint point{};
  if (!AXValueGetValue(static_cast<AXValueRef>(value), kAXValueTypeCGPoint, &point)) {
    return kAXErrorIllegalArgument;
  }
  fake::note("AXUIElementSetAttributeValue " + std::to_string(elementOf(element)->_windowID) + ' ' +
             ((__bridge NSString*)attribute).UTF8String + ' ' + fake::describe(point));
  fake::SourceWindow* const window = windowOf(element);
  if (window == nullptr) return kAXErrorInvalidUIElement;
  if (!window->moves) return kAXErrorCannotComplete;
  window->frame.origin = point;
  return kAXErrorSuccess;
}

AXValueRef AXValueCreate(AXValueType type, const void* value) {
  if (type != kAXValueTypeCGPoint) fake::fail("a value of another type has no behaviour here");
  return makePoint(*static_cast<const CGPoint*>(value));
}

CFTypeID AXValueGetTypeID() { return typeOf([VLPointValue class]); }

Boolean AXValueGetValue(AXValueRef value, AXValueType type, void* result) {
  if (type != kAXValueTypeCGPoint) return 0;
  *static_cast<CGPoint*>(result) = ((__bridge VLPointValue*)value)->_point;
  return 1;
}
}
