#pragma once

#include <cstddef>
#include <string>

#include "platform/ScreenCapture.h"

namespace vistrel {

/// The picker's status while it waits for the list.
std::string pickerStatusWhileLooking(bool accessGranted);
/// The picker's status once `count` windows are listed.
std::string pickerStatus(std::size_t count, bool accessGranted);
/// The text of a window's row.
std::string pickerRowText(const platform::ShareableWindow& window, bool mirrored);

}  // namespace vistrel
