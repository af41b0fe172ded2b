#pragma once

namespace vistrel::platform::linux_desktop {

/// The display server is gone: writes one line to standard error, once, and ends the process with
/// status 1 without running destructors. Any thread.
[[noreturn]] void endProgramDisplayLost();

}  // namespace vistrel::platform::linux_desktop
