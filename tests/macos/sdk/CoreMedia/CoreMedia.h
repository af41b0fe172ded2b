#pragma once

#import <CoreFoundation/CoreFoundation.h>
#import <CoreVideo/CoreVideo.h>

typedef int64_t CMTimeValue;
typedef int32_t CMTimeScale;
typedef uint32_t CMTimeFlags;
typedef int64_t CMTimeEpoch;

typedef struct {
  CMTimeValue value;
  CMTimeScale timescale;
  CMTimeFlags flags;
  CMTimeEpoch epoch;
} CMTime;

typedef struct __attribute__((objc_bridge(id))) opaqueCMSampleBuffer* CMSampleBufferRef;

extern "C" {
CMTime CMTimeMake(int64_t value, int32_t timescale);
Boolean CMSampleBufferIsValid(CMSampleBufferRef _Nonnull sample);
CVImageBufferRef _Nullable CMSampleBufferGetImageBuffer(CMSampleBufferRef _Nonnull sample);
CFArrayRef _Nullable CMSampleBufferGetSampleAttachmentsArray(CMSampleBufferRef _Nonnull sample,
                                                             Boolean createIfNecessary);
}
