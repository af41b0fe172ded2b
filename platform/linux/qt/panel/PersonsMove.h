#pragma once

#include <QPoint>
#include <xcb/xcb.h>

namespace vistrel::platform::linux_desktop {

/// Asks the manager to move a window without a frame as if a person did, over the toolkit's own
/// connection, in turn with what the toolkit asks for: `origin` in pixels of the root window. The
/// toolkit learns of it when it is done. Main thread.
void moveAsPerson(xcb_window_t window, const QPoint& origin);

}  // namespace vistrel::platform::linux_desktop
