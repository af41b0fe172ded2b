#pragma once

#include "platform/linux/session/Session.h"
#include "platform/linux/x11/source/CaptureSource.h"

// What the program looks up in this module.

/// Fills in what of `session` the compositor offers, and has `openSource` open native windows too.
/// Main thread, once.
extern "C" void vistrelJoinWaylandSession(vistrel::platform::linux_desktop::Session& session,
                                          vistrel::platform::linux_desktop::OpenSource& openSource);

/// Shows a notification of the desktop that the program cannot start, since no X server answers:
/// `failure` says so in one line.
extern "C" void vistrelNotifyOfFailure(const char* failure);
