#include "platform/macos/capture/CoreImageContext.h"

#include "platform/macos/capture/CoreVideoPixelBuffer.h"

namespace vistrel::platform::macos {

CoreImageContext::CoreImageContext(const ImageContextOptions& options)
    : context_([CIContext
          contextWithOptions:@{kCIContextUseSoftwareRenderer : @(options.useSoftwareRenderer)}]) {}

std::shared_ptr<const Image> CoreImageContext::createImage(
    const std::shared_ptr<const PixelBuffer>& buffer) {
  const auto& frame = dynamic_cast<const CoreVideoPixelBuffer&>(*buffer);
  CIImage* image = [CIImage imageWithCVPixelBuffer:frame.buffer()];
  CFOwned<CGImageRef> rendered([context_ createCGImage:image fromRect:image.extent]);
  if (!rendered) return nullptr;
  return std::make_shared<CoreGraphicsImage>(std::move(rendered));
}

}  // namespace vistrel::platform::macos
