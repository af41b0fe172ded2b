#pragma once

#include <string>
#include <vector>

#include "platform/Geometry.h"
#include "platform/linux/PixelRect.h"

namespace vistrel::platform::linux_desktop {

/// An output, and what of it KWin gives to a window that is maximised there. Logical pixels of the
/// compositor, y downwards.
struct WorkArea {
  Rect output;
  Rect free;

  friend bool operator==(const WorkArea&, const WorkArea&) = default;
};

/// A script that tells them, as of the desktop that is shown.
extern const char* const scriptThatTellsWorkAreas;

/// What it has told; empty where that is not whole.
std::vector<WorkArea> parseWorkAreas(const std::string& told);

/// What is left of each monitor, in their order, in pixels of X's root window: all of it where KWin
/// has told of no such output. Both count from the same corner, and X's pixels may be finer or
/// coarser by a factor that is the same everywhere.
std::vector<PixelRect> freeAreas(const std::vector<PixelRect>& monitors,
                                 const std::vector<WorkArea>& areas);

}  // namespace vistrel::platform::linux_desktop
