#pragma once

#include <functional>

#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// Waits until `isDone`, and no longer than until the monotonic clock has reached `deadline`
/// seconds or the display is lost; whether it was done. Every event that comes in meanwhile goes to
/// `handle`, and `isDone` is asked again after each; it may itself wait for the server. For
/// connections that no queue serves.
bool awaitEvents(Connection& connection, double deadline,
                 const std::function<void(const xcb_generic_event_t&)>& handle,
                 const std::function<bool()>& isDone);

}  // namespace vistrel::platform::linux_desktop
