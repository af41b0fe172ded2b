#pragma once

#include "platform/linux/session/Session.h"

namespace vistrel::platform::linux_desktop {

/// Has the Wayland half fill in what it can of `session`, where the program runs in a Wayland
/// session and that half is installed with the libraries that it needs. Main thread, once.
void joinWaylandSession(Session& session);

}  // namespace vistrel::platform::linux_desktop
