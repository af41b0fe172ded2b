#pragma once

#include <optional>

#include "platform/Geometry.h"

namespace vistrel {

/// The frame of a panel rolled up to its title bar, top edge kept. Screen space.
platform::Rect rolledUpFrame(const platform::Rect& frame);

/// The frame of a panel rolled down again, top edge, x and width kept: as high as it was before it
/// was rolled up, or as its width and the source's aspect ask for when that is not known. Screen
/// space.
platform::Rect rolledDownFrame(const platform::Rect& frame,
                               const std::optional<platform::Rect>& beforeRollUp, double aspect);

}  // namespace vistrel
