#include "mirror/MirrorContentView.h"

#include "platform/Window.h"

namespace vistrel {

std::unique_ptr<platform::Layer> MirrorContentView::makeBackingLayer() {
  auto layer = std::make_unique<platform::Layer>();
  layer->setContentsGravity(platform::ContentsGravity::resizeAspect);
  layer->setBackgroundColor(platform::Color::black());
  layer->setMagnificationFilter(platform::ContentsFilter::trilinear);
  layer->setMinificationFilter(platform::ContentsFilter::trilinear);
  return layer;
}

void MirrorContentView::viewDidChangeBackingProperties() {
  View::viewDidChangeBackingProperties();
  if (layer() == nullptr) return;
  layer()->setContentsScale(window() != nullptr ? window()->backingScaleFactor()
                                                : platform::backingScaleWithoutScreen);
}

}  // namespace vistrel
