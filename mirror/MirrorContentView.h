#pragma once

#include <memory>

#include "platform/View.h"

namespace vistrel {

/// Hosts the layer whose contents are the mirrored frames, letter-boxed over black.
class MirrorContentView : public platform::View {
 public:
  using View::View;

  std::unique_ptr<platform::Layer> makeBackingLayer() override;
  void viewDidChangeBackingProperties() override;
};

}  // namespace vistrel
