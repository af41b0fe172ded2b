#pragma once

#include "platform/View.h"
#include "platform/linux/PanelSurface.h"

namespace vistrel::platform::linux_desktop {

struct PaintedChrome {
  PanelChrome chrome;
  /// The layer whose contents belong into the chrome's opening; null when it has none.
  const Layer* contentsLayer = nullptr;
};

/// Paints a panel's tree of views for a window of `width` × `height` pixels. Main thread.
PaintedChrome paintChrome(View& contentView, int width, int height, double pixelsPerPoint);

}  // namespace vistrel::platform::linux_desktop
