#include "platform/macos/CoreMediaSampleBuffer.h"

#import <Foundation/Foundation.h>
#import <ScreenCaptureKit/ScreenCaptureKit.h>

#include <cstdint>

#include "platform/macos/Conversions.h"
#include "platform/macos/CoreVideoPixelBuffer.h"

namespace vistrel::platform::macos {

namespace {

AttachmentValue numberValue(NSNumber* number) {
  const char type = number.objCType[0];
  if (type == 'd' || type == 'f') return number.doubleValue;
  return static_cast<std::int64_t>(number.longLongValue);
}

/// None for the kinds of value that the core does not know, such as lists of rectangles.
std::optional<AttachmentValue> attachmentValue(id value) {
  if ([value isKindOfClass:[NSNumber class]]) return numberValue(value);
  if ([value isKindOfClass:[NSString class]]) return utf8(value);
  return std::nullopt;
}

std::string attachmentKey(NSString* key) {
  return [key isEqualToString:SCStreamFrameInfoStatus] ? streamFrameInfoStatus : utf8(key);
}

SampleAttachments attachmentsOf(NSDictionary<NSString*, id>* dictionary) {
  SampleAttachments attachments;
  for (NSString* key in dictionary) {
    if (auto value = attachmentValue(dictionary[key])) {
      attachments.emplace(attachmentKey(key), *std::move(value));
    }
  }
  return attachments;
}

std::optional<std::vector<SampleAttachments>> attachmentsOf(CMSampleBufferRef sample) {
  const CFArrayRef array =
      CMSampleBufferGetSampleAttachmentsArray(sample, /*createIfNecessary=*/false);
  if (array == nullptr) return std::nullopt;
  std::vector<SampleAttachments> attachments;
  for (NSDictionary<NSString*, id>* dictionary in (__bridge NSArray*)array) {
    attachments.push_back(attachmentsOf(dictionary));
  }
  return attachments;
}

}  // namespace

CoreMediaSampleBuffer::CoreMediaSampleBuffer(CMSampleBufferRef sample)
    : sample_(sample), attachments_(attachmentsOf(sample)) {}

std::shared_ptr<const PixelBuffer> CoreMediaSampleBuffer::imageBuffer() const {
  const CVImageBufferRef buffer = CMSampleBufferGetImageBuffer(sample_);
  if (buffer == nullptr) return nullptr;
  return std::make_shared<CoreVideoPixelBuffer>(buffer);
}

}  // namespace vistrel::platform::macos
