#pragma once

#include <cstdint>

#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// Raises the window in its layer, without giving it the keyboard. One that has gone needs none.
/// Returns once the server has done so, or has passed it on to the manager.
void raise(Connection& connection, xcb_window_t window);

/// Whether a program of that process has a window that the window manager knows of.
bool hasWindows(Connection& connection, std::int32_t processID);

/// Brings all windows of a process to the front in the order in which they lie, and has the window
/// manager activate the frontmost one: one on the desktop that is shown if there is any, else its
/// own desktop is shown. False when the process has no window.
bool activateWindows(Connection& connection, std::int32_t processID);

/// Shows the window's desktop and asks the window manager to activate it, for something that a
/// person did at `time`: to it is left whether that is still what they want.
void activateWindow(Connection& connection, xcb_window_t window, xcb_timestamp_t time);

}  // namespace vistrel::platform::linux_desktop
