#pragma once

#import <CoreMedia/CoreMedia.h>

#include "platform/ScreenCapture.h"

namespace vistrel::platform::macos {

/// One delivery of the capture service, for as long as the service's callback runs.
class CoreMediaSampleBuffer final : public SampleBuffer {
 public:
  /// Reads the attachments; the buffer itself must outlive this object.
  explicit CoreMediaSampleBuffer(CMSampleBufferRef sample);

  bool isValid() const override { return CMSampleBufferIsValid(sample_); }
  const std::optional<std::vector<SampleAttachments>>& sampleAttachments() const override {
    return attachments_;
  }
  std::shared_ptr<const PixelBuffer> imageBuffer() const override;

 private:
  CMSampleBufferRef sample_;
  std::optional<std::vector<SampleAttachments>> attachments_;
};

}  // namespace vistrel::platform::macos
