#pragma once

#include <memory>

#include "platform/Backend.h"

namespace vistrel::platform {

/// What the self-tests need of a backend where there is no desktop: no screens, no displays, and
/// events never come. Has nothing else but what it is given: asking for it ends the program.
std::unique_ptr<Backend> makeBackendWithoutDesktop(
    std::unique_ptr<DispatchBackend> dispatch,
    std::unique_ptr<VirtualDisplayBackend> virtualDisplays,
    std::unique_ptr<StandardErrorBackend> standardError);

}  // namespace vistrel::platform
