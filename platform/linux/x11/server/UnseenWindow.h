#pragma once

#include <cstdint>

#include "platform/linux/x11/server/Connection.h"
#include "platform/linux/x11/server/Resources.h"

namespace vistrel::platform::linux_desktop {

/// A window of our own that nobody ever sees, since it is never mapped: for selections, messages,
/// marks and questions to the manager, which takes it for a client's like any other. `events` as in
/// CreateWindow.
OwnWindow makeUnseenWindow(Connection& connection, std::uint32_t events = XCB_EVENT_MASK_NO_EVENT);

}  // namespace vistrel::platform::linux_desktop
