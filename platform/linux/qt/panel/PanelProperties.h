#pragma once

#include <xcb/xproto.h>

namespace vistrel::platform::linux_desktop {

/// Sets what the toolkit cannot of a panel's window, before it is first mapped: the type UTILITY
/// without being a transient of the program's other windows, which would put it away with them
/// (EWMH `_NET_WM_WINDOW_TYPE`); and protocols that offer neither focus (ICCCM `WM_TAKE_FOCUS`) nor
/// synchronised resizing (`_NET_WM_SYNC_REQUEST`, which only the toolkit's own drawing answers).
/// Returns once the display server has done all that the toolkit asked of it so far, so that other
/// connections may use the window.
void completePanelWindow(xcb_window_t window);

}  // namespace vistrel::platform::linux_desktop
