#include "platform/linux/session/SharedScreenLayout.h"

#include <sstream>

#include "platform/linux/Trace.h"

namespace vistrel::platform::linux_desktop {
namespace {

void traceMonitors(const ScreenLayout& layout) {
  for (const auto& each : layout.monitors()) {
    trace(TraceTopic::monitors, [&] {
      std::ostringstream text;
      text << "one at " << areaText(each.monitor.pixels) << ", " << each.monitor.pixelsPerPoint
           << " pixels to a point";
      return text.str();
    });
  }
}

}  // namespace

void SharedScreenLayout::set(ScreenLayout layout) {
  traceMonitors(layout);
  layout_.store(std::make_shared<const ScreenLayout>(std::move(layout)));
}

}  // namespace vistrel::platform::linux_desktop
