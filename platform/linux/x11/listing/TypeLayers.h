#pragma once

#include <span>
#include <string_view>

#include "platform/linux/WindowLayer.h"

namespace vistrel::platform::linux_desktop {

struct TypeLayer {
  /// Such as "_NET_WM_WINDOW_TYPE_DOCK".
  std::string_view type;
  WindowLayer layer;
};

/// The types of windows that EWMH knows, and the layer of each.
std::span<const TypeLayer> typeLayers();

}  // namespace vistrel::platform::linux_desktop
