#pragma once

#include <vector>

#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// The child of the root that holds `window`: its manager's frame, or the window itself. None when
/// it has gone.
xcb_window_t topLevelOf(const Connection& connection, xcb_window_t window);

/// The same windows in the order in which they lie. By the server's word: jwm 2.4.3 has its list
/// (EWMH, _NET_CLIENT_LIST_STACKING) the other way round, and fluxbox 1.3.5 in another order.
std::vector<xcb_window_t> topmostFirst(const Connection& connection,
                                       std::vector<xcb_window_t> windows);

}  // namespace vistrel::platform::linux_desktop
