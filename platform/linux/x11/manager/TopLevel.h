#pragma once

#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// The child of the root that holds `window`: its manager's frame, or the window itself. None when
/// it has gone.
xcb_window_t topLevelOf(const Connection& connection, xcb_window_t window);

}  // namespace vistrel::platform::linux_desktop
