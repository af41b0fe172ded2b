#include "platform/linux/wayland/WaylandSession.h"

#include <string>

#include "platform/linux/Environment.h"
#include "platform/linux/Trace.h"
#include "platform/linux/wayland/WaylandConnection.h"

using namespace vistrel::platform::linux_desktop;

void vistrelJoinWaylandSession(Session& /*session*/) {
  const auto connection = WaylandConnection::open();
  trace(TraceTopic::start, [&] {
    return (connection ? "there is a compositor on " : "no compositor answers on ") +
           environmentVariable("WAYLAND_DISPLAY");
  });
}
