#pragma once

#include "platform/linux/session/Session.h"

/// What the program looks up in this module: fills in what of `session` the compositor offers.
/// Main thread, once.
extern "C" void vistrelJoinWaylandSession(vistrel::platform::linux_desktop::Session& session);
