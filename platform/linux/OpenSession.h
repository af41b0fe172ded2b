#pragma once

#include "platform/Factory.h"
#include "platform/linux/session/Session.h"

namespace vistrel::platform::linux_desktop {

/// Opens the session that the program runs in. The one place that chooses who fills each provider
/// in. Main thread, before the toolkit, which ends the process when it finds no display.
SessionOrFailure openSession(Instances instances);

}  // namespace vistrel::platform::linux_desktop
