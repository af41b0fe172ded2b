#pragma once

#include <optional>
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

/// The layer of windows of an EWMH type such as "_NET_WM_WINDOW_TYPE_DOCK"; none for a type that
/// EWMH does not know.
std::optional<WindowLayer> layerOfType(std::string_view typeName);

}  // namespace vistrel::platform::linux_desktop
