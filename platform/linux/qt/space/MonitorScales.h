#pragma once

#include <string>
#include <vector>

#include "platform/linux/ScreenLayout.h"
#include "platform/linux/qt/space/QtSpace.h"
#include "platform/linux/session/Monitors.h"

namespace vistrel::platform::linux_desktop {

/// A screen of the toolkit's with the name of its monitor.
struct NamedScreen {
  std::string name;
  QtScreen screen;

  friend bool operator==(const NamedScreen&, const NamedScreen&) = default;
};

/// The monitors of the toolkit's screens, in their order: their pixels by the session's word, their
/// scale by the toolkit's. Where the session knows no such monitor, or the toolkit has not heard of
/// its end yet, the pixels are what the toolkit has left of them by rounding.
std::vector<Monitor> scaledMonitors(const std::vector<NamedScreen>& screens,
                                    const std::vector<NamedMonitor>& monitors);

}  // namespace vistrel::platform::linux_desktop
