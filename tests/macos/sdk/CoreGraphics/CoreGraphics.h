#pragma once

#import <CoreFoundation/CoreFoundation.h>

typedef uint32_t CGWindowID;
typedef struct __attribute__((objc_bridge(id))) CGColor* CGColorRef;
typedef struct __attribute__((objc_bridge(id))) CGImage* CGImageRef;
typedef uint32_t CGDirectDisplayID;
typedef struct _CGDisplayConfigRef* CGDisplayConfigRef;

typedef int32_t CGError;
enum : CGError {
  kCGErrorSuccess = 0,
};

typedef uint32_t CGConfigureOption;
enum : CGConfigureOption {
  kCGConfigureForSession = 1,
};

extern "C" {
CFDictionaryRef CGSessionCopyCurrentDictionary(void);

bool CGPreflightScreenCaptureAccess(void);
bool CGRequestScreenCaptureAccess(void);

CGDirectDisplayID CGMainDisplayID(void);
CGRect CGDisplayBounds(CGDirectDisplayID display);
CGError CGGetOnlineDisplayList(uint32_t capacity, CGDirectDisplayID* displays, uint32_t* count);
CGError CGBeginDisplayConfiguration(CGDisplayConfigRef* configuration);
CGError CGConfigureDisplayOrigin(CGDisplayConfigRef configuration, CGDirectDisplayID display,
                                 int32_t x, int32_t y);
CGError CGCancelDisplayConfiguration(CGDisplayConfigRef configuration);
CGError CGCompleteDisplayConfiguration(CGDisplayConfigRef configuration, CGConfigureOption option);
}
