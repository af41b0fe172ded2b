#include "platform/linux/qt/space/MonitorScales.h"

#include <algorithm>

namespace vistrel::platform::linux_desktop {

std::vector<Monitor> scaledMonitors(const std::vector<NamedScreen>& screens,
                                    const std::vector<NamedMonitor>& monitors) {
  std::vector<Monitor> scaled;
  for (const auto& [name, screen] : screens) {
    const auto found =
        std::find_if(monitors.begin(), monitors.end(),
                     [&name = name](const NamedMonitor& each) { return each.name == name; });
    scaled.push_back(
        {found == monitors.end() ? screen.pixels() : found->pixels, screen.pixelsPerPoint});
  }
  return scaled;
}

}  // namespace vistrel::platform::linux_desktop
