#pragma once

#include "platform/Factory.h"
#include "platform/linux/session/Session.h"
#include "platform/linux/x11/source/SourceWindow.h"

namespace vistrel::platform::linux_desktop {

/// The X11 half of the backend: every provider of a session, over the display that DISPLAY names.
/// Knows nothing of the toolkit. Fails where the display does not answer, or without words when it
/// is to be the one instance there and another one has been shown instead. What is captured is
/// opened by `openSource`.
SessionOrFailure openX11Session(Instances instances, OpenSource openSource = openSourceWindow);

}  // namespace vistrel::platform::linux_desktop
