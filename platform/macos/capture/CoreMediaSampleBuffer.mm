#include "platform/macos/capture/CoreMediaSampleBuffer.h"

#import <Foundation/Foundation.h>
#import <ScreenCaptureKit/ScreenCaptureKit.h>

#include <cstdint>

#include "platform/macos/capture/CoreVideoPixelBuffer.h"

namespace vistrel::platform::macos {

namespace {

/// None when it is no number, or a fractional one.
std::optional<std::int64_t> integer(id value) {
  if (![value isKindOfClass:[NSNumber class]]) return std::nullopt;
  NSNumber* number = value;
  const char type = number.objCType[0];
  if (type == 'd' || type == 'f') return std::nullopt;
  return number.longLongValue;
}

}  // namespace

std::optional<std::int64_t> CoreMediaSampleBuffer::frameStatus() const {
  const CFArrayRef array =
      CMSampleBufferGetSampleAttachmentsArray(sample_, /*createIfNecessary=*/false);
  if (array == nullptr) return std::nullopt;
  NSDictionary<NSString*, id>* first = ((__bridge NSArray*)array).firstObject;
  return integer(first[SCStreamFrameInfoStatus]);
}

std::shared_ptr<const PixelBuffer> CoreMediaSampleBuffer::imageBuffer() const {
  const CVImageBufferRef buffer = CMSampleBufferGetImageBuffer(sample_);
  if (buffer == nullptr) return nullptr;
  return std::make_shared<CoreVideoPixelBuffer>(buffer);
}

}  // namespace vistrel::platform::macos
