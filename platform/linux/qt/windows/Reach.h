#pragma once

#include <vector>

#include "platform/Geometry.h"
#include "platform/Screen.h"

namespace vistrel::platform::linux_desktop {

/// Whether a person could get hold of a window there: enough of its top edge lies in the visible
/// frame of a screen. Screen space.
bool isReachable(const Rect& frame, const std::vector<Screen>& screens);

/// Whether it could be a person who has put a window there, one that they can make no smaller than
/// `smallest`: it is in reach, and no larger than all screens together. Screen space.
bool isCredible(const Rect& frame, Size smallest, const std::vector<Screen>& screens);

/// Where a window at `frame` goes when screens have changed: nowhere if a person can reach it, else
/// into the visible frame of the nearest screen, by the shortest way that shows all of it, or of
/// one that is too large, its top-left corner. It keeps its size. Screen space.
Rect broughtIntoReach(const Rect& frame, const std::vector<Screen>& screens);

}  // namespace vistrel::platform::linux_desktop
