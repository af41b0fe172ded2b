#pragma once

#include <functional>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// Calls `serve` on `queue` whenever something may have come in on `connection`, until the display
/// is lost. `serve` keeps the connection alive. On the queue.
void serveOn(SerialQueue& queue, const Connection& connection, std::function<void()> serve);

}  // namespace vistrel::platform::linux_desktop
