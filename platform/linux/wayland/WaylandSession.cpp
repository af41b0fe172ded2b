#include "platform/linux/wayland/WaylandSession.h"

#include <memory>
#include <optional>
#include <plasma-virtual-desktop.h>
#include <string>
#include <utility>
#include <zkde-screencast-unstable-v1.h>

#include "platform/linux/Companions.h"
#include "platform/linux/Environment.h"
#include "platform/linux/Trace.h"
#include "platform/linux/wayland/compositor/NativeWindowIds.h"
#include "platform/linux/wayland/compositor/WaylandConnection.h"
#include "platform/linux/wayland/kwin/KWinAccessibility.h"
#include "platform/linux/wayland/kwin/KWinContextMenuKeys.h"
#include "platform/linux/wayland/kwin/KWinDockAreas.h"
#include "platform/linux/wayland/kwin/KWinGuard.h"
#include "platform/linux/wayland/kwin/KWinMover.h"
#include "platform/linux/wayland/kwin/KWinStreams.h"
#include "platform/linux/wayland/kwin/KWinWindowActivation.h"
#include "platform/linux/wayland/kwin/KWinWindowLister.h"
#include "platform/linux/wayland/kwin/KWinWindows.h"
#include "platform/linux/wayland/portal/PickedWindowLister.h"
#include "platform/linux/wayland/portal/PortalWindowPicking.h"
#include "platform/linux/wayland/portal/PortalWindows.h"
#include "platform/linux/wayland/stream/PipeWireSource.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// What KWin offers everybody.
bool isKWin(const WaylandConnection& connection) {
  return connection.versionOf(org_kde_plasma_virtual_desktop_management_interface.name) > 0;
}

/// What KWin offers those whose desktop entry asks for it.
bool isGranted(const WaylandConnection& connection) {
  return KWinWindows::isOfferedOn(connection) &&
         connection.versionOf(zkde_screencast_unstable_v1_interface.name) > 0;
}

std::string description(const WaylandConnection* connection) {
  const auto name = environmentVariable("WAYLAND_DISPLAY");
  if (connection == nullptr) return "no compositor answers on " + name;
  if (!isKWin(*connection)) return "native windows on " + name + " are picked by the portal";
  if (!isGranted(*connection)) return "KWin on " + name + " does not grant native windows";
  return "KWin lists, captures and moves native windows on " + name;
}

/// As a person types it; empty where there is nothing to grant.
std::string grantCommand() {
  const auto connection = WaylandConnection::open();
  if (!connection || isGranted(*connection)) return {};
  const auto grant = companion("vistrel-kwin-grant", VISTREL_INSTALLED_GRANT);
  return (grant.empty() ? "vistrel-kwin-grant" : grant.string()) + " " + ownProgram().string();
}

/// Has `request` say how native windows are asked for; none where one cannot be.
OpenSource openingNativeToo(
    OpenSource openOfX,
    std::function<std::optional<StreamRequest>(const CapturingMirror&, WindowID)> request) {
  return [openOfX = std::move(openOfX), request = std::move(request)](
             const CapturingMirror& mirror, WindowID window) -> std::unique_ptr<CaptureSource> {
    if (!NativeWindowIds::isNative(window)) return openOfX(mirror, window);
    auto asked = request(mirror, window);
    return asked ? PipeWireSource::open(mirror, window, *std::move(asked)) : nullptr;
  };
}

void joinKWin(Session& session, OpenSource& openSource) {
  const auto ids = std::make_shared<NativeWindowIds>();
  const auto guard = std::make_shared<KWinGuard>();
  const auto mover = std::make_shared<KWinMover>(session.parkedSources, ids, guard);
  session.windowLister = std::make_unique<KWinWindowLister>(
      std::move(session.windowLister), ids, session.panelWindows->foreignFullScreenFollower());
  session.confinesWindows = true;
  session.dockAreas = std::make_unique<KWinDockAreas>(std::move(session.dockAreas));
  session.contextMenuKeys =
      std::make_unique<KWinContextMenuKeys>(std::move(session.contextMenuKeys), guard);
  session.windowActivation =
      std::make_unique<KWinWindowActivation>(std::move(session.windowActivation), mover);
  session.otherWindows =
      std::make_unique<KWinAccessibility>(std::move(session.otherWindows), mover);
  session.parkedSources = mover;
  openSource = openingNativeToo(std::move(openSource), [ids](const auto& mirror, WindowID window) {
    return KWinStreams::request(mirror.queue, ids->uuidOf(window));
  });
  session.facts = [ofX = std::move(session.facts)] {
    auto facts = ofX();
    facts.grantCommand = grantCommand();
    return facts;
  };
}

void joinPortal(Session& session, OpenSource& openSource) {
  const auto picked = std::make_shared<PortalWindows>(session.layout);
  session.windowLister =
      std::make_unique<PickedWindowLister>(std::move(session.windowLister), picked);
  session.windowPicking = std::make_unique<PortalWindowPicking>(picked);
  openSource =
      openingNativeToo(std::move(openSource), [picked](const auto& mirror, WindowID window) {
        return picked->request(mirror.queue, window);
      });
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop

using namespace vistrel::platform::linux_desktop;

void vistrelJoinWaylandSession(Session& session, OpenSource& openSource) {
  const auto connection = WaylandConnection::open();
  trace(TraceTopic::start, [&] { return description(connection.get()); });
  if (!connection) return;
  isKWin(*connection) ? joinKWin(session, openSource) : joinPortal(session, openSource);
}
