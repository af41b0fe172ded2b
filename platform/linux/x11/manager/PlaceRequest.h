#pragma once

#include "platform/linux/PixelRect.h"
#include "platform/linux/x11/manager/VisibleFrame.h"
#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// Asks the manager to put another program's window at `client`, in pixels of the root window,
/// inside a frame of its own with widths `frame`. It may have its own mind. Returns once it has
/// dealt with that, or at the deadline. Without a manager the window is moved. `connection` listens
/// to no events of windows.
void requestPlace(Connection& connection, xcb_window_t window, const PixelRect& client,
                  const Extents& frame, double deadline);

}  // namespace vistrel::platform::linux_desktop
