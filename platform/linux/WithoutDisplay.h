#pragma once

#include <memory>

#include "platform/Backend.h"

namespace vistrel::platform::linux_desktop {

/// What the self-tests need of a backend where no display server answers. Has nothing else: asking
/// for it ends the program.
std::unique_ptr<Backend> makeBackendWithoutDisplay();

}  // namespace vistrel::platform::linux_desktop
