#pragma once

#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// Whether the display server could take more than so many further clients; also where it does not
/// tell (X-Resource 1.0).
bool hasRoomForMoreThan(Connection& connection, int clients);

}  // namespace vistrel::platform::linux_desktop
