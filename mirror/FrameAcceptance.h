#pragma once

#include <optional>
#include <vector>

#include "platform/ScreenCapture.h"

namespace vistrel {

/// Whether a sample's attachments let it be shown: the first of them carries no frame status that
/// is an integer, or it carries the status "complete". Idle, blank, suspended, started and stopped
/// frames are never shown.
bool isCompleteFrame(
    const std::optional<std::vector<platform::SampleAttachments>>& sampleAttachments);

}  // namespace vistrel
