#pragma once

#include <string>

#include "tests/support/PrivateDisplay.h"

namespace vistrel::testbed {

/// What a person reads of the session's monitors: the output of `xrandr --query` and of
/// `xrandr --listmonitors`. Throws std::runtime_error when it cannot be had.
std::string monitorReport(const PrivateDisplay& display);

}  // namespace vistrel::testbed
