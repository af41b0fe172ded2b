#pragma once

namespace vistrel::platform::linux_desktop {

/// Stacking layers, 0 for ordinary windows. Only that and their order mean something.
enum WindowLayer : int {
  layerDesktop = -1,
  layerOrdinary = 0,
  layerFloating = 3,
  layerDock = 20,
  layerPopUp = 101,
};

}  // namespace vistrel::platform::linux_desktop
