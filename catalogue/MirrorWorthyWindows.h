#pragma once

#include <cstdint>
#include <vector>

#include "platform/ScreenCapture.h"

namespace vistrel {

/// The windows worth mirroring, in the order in which every list shows them: ordinary titled
/// windows on the screen, not too small and not of the process `ownProcessID`, grouped by
/// application and then sorted by title, both as a person's language sorts and without regard to
/// letter case. Windows that compare alike keep their order, and so do those of applications whose
/// names differ in letter case alone: there titles sort only neighbours of one spelling. Any
/// thread.
std::vector<platform::WindowRecord> mirrorWorthyWindows(
    const std::vector<platform::WindowRecord>& windows, std::int32_t ownProcessID);

}  // namespace vistrel
