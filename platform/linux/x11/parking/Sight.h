#pragma once

#include <vector>

#include "platform/linux/PixelRect.h"

namespace vistrel::platform::linux_desktop {

/// Whether a person has a parked window before them: whether one of `monitors` shows more than a
/// quarter of it. Less than that are the corner that a window is parked in, and what a manager adds
/// to it so that it can be caught with the pointer.
bool isInSight(const PixelRect& window, const std::vector<PixelRect>& monitors);

}  // namespace vistrel::platform::linux_desktop
