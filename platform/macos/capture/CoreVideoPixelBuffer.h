#pragma once

#import <CoreVideo/CoreVideo.h>

#include "platform/Image.h"
#include "platform/macos/CFOwned.h"

namespace vistrel::platform::macos {

/// A frame's pixels as the capture service hands them out. Holding it keeps one of the service's
/// few surfaces from being used again.
class CoreVideoPixelBuffer final : public PixelBuffer {
 public:
  explicit CoreVideoPixelBuffer(CVPixelBufferRef buffer);

  PixelFormat pixelFormat() const override;
  std::int64_t width() const override;
  std::int64_t height() const override;
  bool visitSampleGrid(int rows, int columns,
                       const std::function<bool(PixelBGRA)>& visit) const override;

  CVPixelBufferRef buffer() const { return buffer_.get(); }

 private:
  CFOwned<CVPixelBufferRef> buffer_;
};

}  // namespace vistrel::platform::macos
