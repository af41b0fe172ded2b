#pragma once

#include <optional>
#include <string_view>

#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// The server's time of what a person did to start a program, from the DESKTOP_STARTUP_ID that the
/// launcher gave it (Startup Notification Protocol 0.2: the digits behind "_TIME" at its end); none
/// when it names no time.
std::optional<xcb_timestamp_t> timeOfStart(std::string_view startupID);

/// Tells launchers that the start is over, so that they show nobody any longer that it is under
/// way: for a program that shows no window of its own. `sender` is a window of ours.
void tellStartIsOver(Connection& connection, xcb_window_t sender, std::string_view startupID);

}  // namespace vistrel::platform::linux_desktop
