#pragma once

#include "platform/Window.h"

namespace vistrel {

/// The borderless floating window of one mirror.
class MirrorPanel : public platform::Panel {
 public:
  using Panel::Panel;

  /// A borderless window could not become key otherwise.
  bool canBecomeKey() const override { return true; }
};

}  // namespace vistrel
