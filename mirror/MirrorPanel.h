#pragma once

#include <memory>

#include "platform/Window.h"

namespace vistrel {

/// The borderless floating window of one mirror.
class MirrorPanel : public platform::Panel {
 public:
  using Panel::Panel;

  /// Hidden, and set up as mirrors' panels are. `contentSize` in points.
  static std::shared_ptr<MirrorPanel> make(platform::Size contentSize);

  /// A borderless window could not become key otherwise.
  bool canBecomeKey() const override { return true; }
};

}  // namespace vistrel
