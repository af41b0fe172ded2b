#pragma once

#include <vector>

#include "platform/linux/PixelRect.h"

namespace vistrel::platform::linux_desktop {

/// Where a monitor goes that is to be at `wanted` and must not overlap any of `others`: there, or
/// as little further to the right as it takes.
PixelRect freePlace(PixelRect wanted, const std::vector<PixelRect>& others);

}  // namespace vistrel::platform::linux_desktop
