#pragma once

#include "platform/Image.h"

namespace vistrel {

/// Whether a frame is near-black everywhere on a fixed 24 × 24 grid over it, so that an earlier
/// picture is worth more. A frame in another pixel format than 32BGRA, one that cannot be read, and
/// one that is less than 2 pixels wide or high is not blank.
bool isMostlyBlank(const platform::PixelBuffer& frame);

}  // namespace vistrel
