#pragma once

#include "platform/linux/session/Session.h"

// What the program looks up in this module.

/// Fills in what of `session` the compositor offers. Main thread, once.
extern "C" void vistrelJoinWaylandSession(vistrel::platform::linux_desktop::Session& session);

/// Shows a notification of the desktop that the program cannot start, since no X server answers:
/// `failure` says so in one line.
extern "C" void vistrelNotifyOfFailure(const char* failure);
