#pragma once

#include <string>

#include "tests/support/XConnection.h"

namespace vistrel::testbed {

/// Asks the program that has the window whether it lives (EWMH 1.5, _NET_WM_PING) and waits for its
/// answer. It has then taken in all that it was sent before, and what it asked the window manager
/// for comes before anything that is asked from now on. False when it does not answer.
bool answersPing(const std::string& display, xcb_window_t window);

}  // namespace vistrel::testbed
