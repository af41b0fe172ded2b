#include "platform/linux/wayland/WaylandSession.h"

#include <memory>
#include <string>
#include <utility>

#include "platform/linux/Environment.h"
#include "platform/linux/Trace.h"
#include "platform/linux/wayland/KWinAccessibility.h"
#include "platform/linux/wayland/KWinMover.h"
#include "platform/linux/wayland/KWinWindowActivation.h"
#include "platform/linux/wayland/KWinWindowLister.h"
#include "platform/linux/wayland/KWinWindows.h"
#include "platform/linux/wayland/NativeWindowIds.h"
#include "platform/linux/wayland/WaylandConnection.h"

namespace vistrel::platform::linux_desktop {
namespace {

std::string description(const WaylandConnection* connection) {
  const auto name = environmentVariable("WAYLAND_DISPLAY");
  if (connection == nullptr) return "no compositor answers on " + name;
  return "the compositor on " + name +
         (KWinWindows::isOfferedOn(*connection) ? " lists" : " does not list") + " native windows";
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop

using namespace vistrel::platform::linux_desktop;

void vistrelJoinWaylandSession(Session& session) {
  const auto connection = WaylandConnection::open();
  trace(TraceTopic::start, [&] { return description(connection.get()); });
  if (!connection) return;
  const auto ids = std::make_shared<NativeWindowIds>();
  const auto mover = std::make_shared<KWinMover>(session.parkedSources, ids);
  session.windowLister = std::make_unique<KWinWindowLister>(std::move(session.windowLister), ids);
  session.windowActivation =
      std::make_unique<KWinWindowActivation>(std::move(session.windowActivation), mover);
  session.otherWindows =
      std::make_unique<KWinAccessibility>(std::move(session.otherWindows), mover);
  session.parkedSources = mover;
}
