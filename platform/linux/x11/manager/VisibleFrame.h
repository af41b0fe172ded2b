#pragma once

#include <cstdint>
#include <vector>

#include "platform/linux/x11/server/PixelGeometry.h"

namespace vistrel::platform::linux_desktop {

/// Widths around a window, as `_NET_FRAME_EXTENTS` and `_GTK_FRAME_EXTENTS` carry them.
struct Extents {
  int left = 0;
  int right = 0;
  int top = 0;
  int bottom = 0;

  friend bool operator==(const Extents&, const Extents&) = default;
};

/// None at all when the property is missing, malformed or absurd.
Extents extentsFrom(const std::vector<std::uint32_t>& property);

/// What a person sees as the window: the client's inside with the manager's decoration around it
/// (`_NET_FRAME_EXTENTS`) or, where there is none, less the shadow that a client draws inside
/// itself (`_GTK_FRAME_EXTENTS`). In the space of `client`.
PixelRect visibleFrame(const PixelRect& client, const Extents& decoration, const Extents& shadow);

}  // namespace vistrel::platform::linux_desktop
