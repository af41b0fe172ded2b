#pragma once

#include <span>
#include <string_view>

namespace vistrel::platform::linux_desktop {

/// Stacking layers, 0 for ordinary windows. Only that and their order mean something.
enum WindowLayer : int {
  layerDesktop = -1,
  layerOrdinary = 0,
  layerFloating = 3,
  layerDock = 20,
  layerPopUp = 101,
};

struct TypeLayer {
  /// Such as "_NET_WM_WINDOW_TYPE_DOCK".
  std::string_view type;
  WindowLayer layer;
};

/// The types of windows that EWMH knows, and the layer of each.
std::span<const TypeLayer> typeLayers();

}  // namespace vistrel::platform::linux_desktop
