#pragma once

#import <CoreFoundation/CoreFoundation.h>
#import <CoreGraphics/CoreGraphics.h>
#include <sys/types.h>

typedef const struct __attribute__((objc_bridge(id))) __AXUIElement* AXUIElementRef;
typedef const struct __attribute__((objc_bridge(id))) __AXValue* AXValueRef;

typedef int32_t AXError;
enum : AXError {
  kAXErrorSuccess = 0,
  kAXErrorFailure = -25200,
  kAXErrorIllegalArgument = -25201,
  kAXErrorInvalidUIElement = -25202,
  kAXErrorCannotComplete = -25204,
  kAXErrorAttributeUnsupported = -25205,
  kAXErrorAPIDisabled = -25211,
  kAXErrorNoValue = -25212,
};

typedef uint32_t AXValueType;
enum : AXValueType {
  kAXValueTypeCGPoint = 1,
};

extern "C" {
extern const CFStringRef kAXTrustedCheckOptionPrompt;

Boolean AXIsProcessTrusted(void);
Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options);
AXUIElementRef AXUIElementCreateApplication(pid_t processID);
CFTypeID AXUIElementGetTypeID(void);
AXError AXUIElementCopyAttributeValue(AXUIElementRef element, CFStringRef attribute,
                                      CFTypeRef* value);
AXError AXUIElementSetAttributeValue(AXUIElementRef element, CFStringRef attribute,
                                     CFTypeRef value);
AXValueRef AXValueCreate(AXValueType type, const void* value);
CFTypeID AXValueGetTypeID(void);
Boolean AXValueGetValue(AXValueRef value, AXValueType type, void* result);
}
