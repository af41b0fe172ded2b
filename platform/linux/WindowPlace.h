#pragma once

#include <optional>
#include <xcb/xproto.h>

#include "platform/linux/PixelRect.h"

namespace vistrel::platform::linux_desktop {

/// Where the display server has a window at this moment, in pixels of `reference`, both without
/// their borders; none when either has gone. One round trip.
std::optional<PixelRect> placeIn(xcb_connection_t* connection, xcb_window_t window,
                                 xcb_window_t reference);

}  // namespace vistrel::platform::linux_desktop
