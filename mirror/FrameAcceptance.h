#pragma once

#include <cstdint>
#include <optional>

namespace vistrel {

/// Whether a sample of that frame status may be shown: it has none, or it is "complete". Idle,
/// blank, suspended, started and stopped frames are never shown.
bool isCompleteFrame(std::optional<std::int64_t> frameStatus);

}  // namespace vistrel
