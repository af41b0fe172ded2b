#pragma once

#import <CoreGraphics/CoreGraphics.h>
#import <CoreImage/CoreImage.h>

#include "platform/Image.h"
#include "platform/macos/CFOwned.h"

namespace vistrel::platform::macos {

/// A picture that a `CALayer` takes as its contents.
class CoreGraphicsImage final : public Image {
 public:
  explicit CoreGraphicsImage(CFOwned<CGImageRef> image) : image_(std::move(image)) {}

  CGImageRef image() const { return image_.get(); }

 private:
  CFOwned<CGImageRef> image_;
};

/// Renders the capture service's pixel buffers into pictures of their own.
class CoreImageContext final : public ImageContext {
 public:
  explicit CoreImageContext(const ImageContextOptions& options);

  /// `buffer` must come from a stream of this backend.
  std::shared_ptr<const Image> createImage(
      const std::shared_ptr<const PixelBuffer>& buffer) override;

 private:
  CIContext* context_;
};

}  // namespace vistrel::platform::macos
