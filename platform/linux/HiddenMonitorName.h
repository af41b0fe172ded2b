#pragma once

#include <string_view>

namespace vistrel::platform::linux_desktop {

/// What the names of monitors begin with that nobody sees. They hold parked windows, and are no
/// place for anything else.
inline constexpr std::string_view hiddenMonitorPrefix = "vistrel-hidden-";

inline bool isHiddenMonitor(std::string_view name) { return name.starts_with(hiddenMonitorPrefix); }

}  // namespace vistrel::platform::linux_desktop
