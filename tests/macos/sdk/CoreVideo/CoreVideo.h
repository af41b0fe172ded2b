#pragma once

#import <CoreFoundation/CoreFoundation.h>

typedef struct __attribute__((objc_bridge(id))) __CVBuffer* CVImageBufferRef;
typedef CVImageBufferRef CVPixelBufferRef;
typedef int32_t CVReturn;
typedef uint64_t CVOptionFlags;

typedef CVOptionFlags CVPixelBufferLockFlags;

enum : CVPixelBufferLockFlags { kCVPixelBufferLock_ReadOnly = 1 };

enum : OSType { kCVPixelFormatType_32BGRA = 0x42475241 };

enum : CVReturn { kCVReturnSuccess = 0 };

extern "C" {
OSType CVPixelBufferGetPixelFormatType(CVPixelBufferRef _Nonnull buffer);
size_t CVPixelBufferGetWidth(CVPixelBufferRef _Nonnull buffer);
size_t CVPixelBufferGetHeight(CVPixelBufferRef _Nonnull buffer);
size_t CVPixelBufferGetBytesPerRow(CVPixelBufferRef _Nonnull buffer);
void* _Nullable CVPixelBufferGetBaseAddress(CVPixelBufferRef _Nonnull buffer);
CVReturn CVPixelBufferLockBaseAddress(CVPixelBufferRef _Nonnull buffer,
                                      CVPixelBufferLockFlags flags);
CVReturn CVPixelBufferUnlockBaseAddress(CVPixelBufferRef _Nonnull buffer,
                                        CVPixelBufferLockFlags flags);
}
