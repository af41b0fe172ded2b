#pragma once

#include <functional>

#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

bool hasWindow(Connection& connection, xcb_window_t window);

/// Waits until `hasEnded` says so, which is asked now and when `window` is destroyed, or until the
/// display is lost.
void awaitEndOf(Connection& connection, xcb_window_t window, const std::function<bool()>& hasEnded);

}  // namespace vistrel::platform::linux_desktop
