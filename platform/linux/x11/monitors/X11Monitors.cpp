#include "platform/linux/x11/monitors/X11Monitors.h"

#include <utility>

#include "platform/linux/x11/monitors/MonitorList.h"

namespace vistrel::platform::linux_desktop {

X11Monitors::X11Monitors(std::shared_ptr<Connection> connection)
    : connection_(std::move(connection)), hasMonitors_(offersMonitors(*connection_)) {}

std::vector<NamedMonitor> X11Monitors::list() {
  if (!hasMonitors_) return {};
  std::vector<NamedMonitor> monitors;
  for (const auto& each : monitorsOf(*connection_)) monitors.push_back({each.name, each.area});
  return monitors;
}

}  // namespace vistrel::platform::linux_desktop
