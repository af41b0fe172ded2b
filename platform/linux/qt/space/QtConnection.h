#pragma once

#include <xcb/xcb.h>

namespace vistrel::platform::linux_desktop {

/// The toolkit's own connection to the display, for what it offers no call for; null on platforms
/// without one. Main thread.
xcb_connection_t* qtConnection();

/// Waits until the server has carried out what the toolkit has asked for so far. Main thread.
void syncQt();

}  // namespace vistrel::platform::linux_desktop
