#pragma once

#include "platform/Geometry.h"

namespace vistrel {

/// The frame of a panel that shows its source, `sourceSize` points large, at `factor` of its size,
/// but not narrower than `minWidth`: below its title bar the panel has the source's `aspect`. The
/// top left corner of `frame` is kept. Screen space.
platform::Rect scaledFrame(const platform::Rect& frame, platform::Size sourceSize, double aspect,
                           double factor, double minWidth);

}  // namespace vistrel
