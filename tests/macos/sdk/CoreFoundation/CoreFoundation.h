#pragma once

#include <stddef.h>
#include <stdint.h>

typedef const void* CFTypeRef;
typedef unsigned char Boolean;
typedef uint32_t OSType;
typedef double CGFloat;
typedef const struct __attribute__((objc_bridge(NSArray))) __CFArray* CFArrayRef;

struct CGPoint {
  CGFloat x;
  CGFloat y;
};
typedef struct CGPoint CGPoint;

struct CGSize {
  CGFloat width;
  CGFloat height;
};
typedef struct CGSize CGSize;

struct CGRect {
  CGPoint origin;
  CGSize size;
};
typedef struct CGRect CGRect;

extern "C" {
CFTypeRef CFRetain(CFTypeRef object);
void CFRelease(CFTypeRef object);
}
