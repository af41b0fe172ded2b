#include "platform/macos/views/LayerState.h"

#include "platform/macos/Conversions.h"
#include "platform/macos/capture/CoreImageContext.h"

namespace vistrel::platform::macos {

namespace {

CALayerContentsFilter contentsFilter(ContentsFilter filter) {
  return filter == ContentsFilter::trilinear ? kCAFilterTrilinear : kCAFilterLinear;
}

}  // namespace

void applyLayerState(const Layer& layer, CALayer* target) {
  const auto& background = layer.backgroundColor();
  target.backgroundColor = background ? nsColor(*background).CGColor : nullptr;
  target.cornerRadius = layer.cornerRadius();
  target.masksToBounds = layer.masksToBounds();
  target.borderWidth = layer.borderWidth();
  target.borderColor = nsColor(layer.borderColor()).CGColor;
  target.contentsScale = layer.contentsScale();
  target.contentsGravity = layer.contentsGravity() == ContentsGravity::resizeAspect
                               ? kCAGravityResizeAspect
                               : kCAGravityResize;
  target.magnificationFilter = contentsFilter(layer.magnificationFilter());
  target.minificationFilter = contentsFilter(layer.minificationFilter());
  applyLayerContents(layer, target);
}

void applyLayerContents(const Layer& layer, CALayer* target) {
  const auto* image = dynamic_cast<const CoreGraphicsImage*>(layer.contents().get());
  target.contents = image != nullptr ? (__bridge id)image->image() : nil;
}

}  // namespace vistrel::platform::macos
