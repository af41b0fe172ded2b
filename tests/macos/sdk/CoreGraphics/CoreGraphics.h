#pragma once

#import <CoreFoundation/CoreFoundation.h>

typedef uint32_t CGWindowID;
typedef struct __attribute__((objc_bridge(id))) CGColor* CGColorRef;
typedef struct __attribute__((objc_bridge(id))) CGImage* CGImageRef;

extern "C" {
bool CGPreflightScreenCaptureAccess(void);
bool CGRequestScreenCaptureAccess(void);
}
