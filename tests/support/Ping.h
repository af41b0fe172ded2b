#pragma once

#include <string>

#include "tests/support/XConnection.h"

namespace vistrel::testbed {

/// Whether its program answers pings there (EWMH 1.5, _NET_WM_PING); not when the window is gone.
bool takesPing(const XConnection& connection, xcb_window_t window);

/// Pings the program that has the window and waits for the answer. The program has then taken in
/// all that it was sent before, and what it asked the window manager for comes before anything that
/// is asked from now on. False when no answer comes, at once when the window goes.
bool answersPing(const std::string& display, xcb_window_t window);

}  // namespace vistrel::testbed
