#pragma once

#include <cstdint>

namespace vistrel::platform::linux_desktop {

/// What this process marks those windows with by which others tell that it lives: a display server
/// hands numbers of windows out again once a process has ended, to whichever comes next. Drawn by
/// lot, not 0. Any thread.
std::uint32_t processToken();

}  // namespace vistrel::platform::linux_desktop
