#pragma once

#include <optional>
#include <xcb/xproto.h>

#include "platform/linux/PixelRect.h"

namespace vistrel::platform::linux_desktop {

/// Where the display server has a window of the toolkit's at this moment, in pixels of the root
/// window, without decorations; none for a window that has gone. Qt 6.4.2 itself tells a place
/// in points of the screen that the window was on when the news came in, which may be another one
/// by the time it is told.
std::optional<PixelRect> placeOnRoot(xcb_window_t window);

}  // namespace vistrel::platform::linux_desktop
