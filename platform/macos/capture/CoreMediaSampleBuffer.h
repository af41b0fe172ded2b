#pragma once

#import <CoreMedia/CoreMedia.h>

#include "platform/ScreenCapture.h"

namespace vistrel::platform::macos {

/// One delivery of the capture service, for as long as the service's callback runs.
class CoreMediaSampleBuffer final : public SampleBuffer {
 public:
  /// The buffer must outlive this object.
  explicit CoreMediaSampleBuffer(CMSampleBufferRef sample) : sample_(sample) {}

  bool isValid() const override { return CMSampleBufferIsValid(sample_); }
  std::optional<std::int64_t> frameStatus() const override;
  std::shared_ptr<const PixelBuffer> imageBuffer() const override;

 private:
  CMSampleBufferRef sample_;
};

}  // namespace vistrel::platform::macos
