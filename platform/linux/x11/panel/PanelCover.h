#pragma once

#include <vector>

#include "platform/linux/PixelRect.h"

namespace vistrel::platform::linux_desktop {

/// Whether nothing of a panel can be seen for the panels that lie above it. Frames in pixels, with
/// one origin for all. Panels' corners are round: what is under one shows, but for the same corner
/// of a panel that has it in the same place.
bool isWhollyUnder(const PixelRect& panel, const std::vector<PixelRect>& above);

}  // namespace vistrel::platform::linux_desktop
