#pragma once

#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// The selection that the one instance of a display owns (ICCCM 2.1). The server takes it away when
/// the instance ends, however it does, so it never tells of one that is gone.
inline constexpr auto instanceSelection = "_VISTREL_INSTANCE";
/// The target that asks the instance to show itself, a side effect (ICCCM 2.6.3): done once the
/// property that the request names is there. The request's time is that of what the person did.
inline constexpr auto showTarget = "_VISTREL_SHOW";

/// Asks the instance that owns the selection by its window `owner` to show itself. False when it
/// has gone, or has not answered in as long a time as a living program needs at the most.
bool showRunningInstance(Connection& connection, xcb_window_t owner, xcb_timestamp_t time);

}  // namespace vistrel::platform::linux_desktop
