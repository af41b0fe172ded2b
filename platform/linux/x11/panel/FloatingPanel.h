#pragma once

#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// Makes `window` a panel that floats: above all windows and on every desktop, out of taskbar and
/// pager, of the type UTILITY without being a transient of the program's other windows (which Qt
/// 6.4.2 makes of such a window), which would put it away with them, and with protocols that offer
/// neither focus (ICCCM `WM_TAKE_FOCUS`) nor synchronised resizing (`_NET_WM_SYNC_REQUEST`, which
/// only Qt's own drawing answers). By
/// EWMH's properties, each time before the window is mapped: managers take some of them away from a
/// window that is withdrawn. Returns once they are set.
///
/// Whoever makes the window asks for the rest, which managers read from hints that its maker writes
/// as well: no decoration, no keyboard, no activation when it is mapped. What keeps it above
/// full-screen windows is `FullScreenFollower`.
void makeFloating(Connection& connection, xcb_window_t window);

}  // namespace vistrel::platform::linux_desktop
