#pragma once

#include <cstdint>
#include <vector>

#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// The windows of applications, topmost first: the window manager's own list where one runs that
/// follows EWMH, else what can be found below the root.
std::vector<xcb_window_t> clientWindows(Connection& connection);
/// Those of a process, or of what `standInProcessId` stands for, topmost first.
std::vector<xcb_window_t> clientWindowsOf(Connection& connection, std::int32_t processID);

}  // namespace vistrel::platform::linux_desktop
