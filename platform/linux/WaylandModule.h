#pragma once

#include <string>

#include "platform/linux/session/Session.h"
#include "platform/linux/x11/source/CaptureSource.h"

namespace vistrel::platform::linux_desktop {

/// Has the Wayland half fill in what it can of `session`, where the program runs in a Wayland
/// session and that half is installed with the libraries that it needs; `openSource` opens native
/// windows too from then on. Main thread, once, before anything is captured.
void joinWaylandSession(Session& session, OpenSource& openSource);

/// Has a Wayland session show why the program cannot start there, where it is one and can.
void notifyOfFailure(const std::string& failure);

}  // namespace vistrel::platform::linux_desktop
