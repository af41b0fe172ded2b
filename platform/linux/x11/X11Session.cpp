#include "platform/linux/x11/X11Session.h"

#include <fcntl.h>
#include <string>
#include <unistd.h>
#include <utility>

#include "platform/linux/Environment.h"
#include "platform/linux/SerialQueue.h"
#include "platform/linux/Trace.h"
#include "platform/linux/x11/instance/X11ProgramInstance.h"
#include "platform/linux/x11/listing/ShareableContentService.h"
#include "platform/linux/x11/manager/CommandDeadline.h"
#include "platform/linux/x11/manager/Manager.h"
#include "platform/linux/x11/manager/X11WindowActivation.h"
#include "platform/linux/x11/monitors/X11Displays.h"
#include "platform/linux/x11/monitors/X11DockAreas.h"
#include "platform/linux/x11/monitors/X11Monitors.h"
#include "platform/linux/x11/panel/X11ContextMenuKeys.h"
#include "platform/linux/x11/parking/Guard.h"
#include "platform/linux/x11/parking/Homecoming.h"
#include "platform/linux/x11/parking/ParkedWindows.h"
#include "platform/linux/x11/parking/X11Accessibility.h"
#include "platform/linux/x11/parking/X11SourceSituations.h"
#include "platform/linux/x11/server/Connection.h"
#include "platform/linux/x11/stream/X11PanelWindows.h"
#include "platform/linux/x11/stream/X11WindowStreams.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// Keeps standard error shut while it lives. For libxcb 1.15, which writes there why a display
/// refuses.
class ShutStandardError {
 public:
  ShutStandardError() : kept_(fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0)) {
    const int nothing = open("/dev/null", O_WRONLY | O_CLOEXEC);
    dup2(nothing, STDERR_FILENO);
    close(nothing);
  }
  ShutStandardError(const ShutStandardError&) = delete;
  ShutStandardError& operator=(const ShutStandardError&) = delete;
  ~ShutStandardError() {
    dup2(kept_, STDERR_FILENO);
    close(kept_);
  }

 private:
  int kept_;
};

std::unique_ptr<Connection> openQuietly() {
  const ShutStandardError shut;
  return Connection::open();
}

std::string displayName() { return environmentVariable("DISPLAY"); }

std::string failureToConnect() {
  const auto name = displayName();
  if (name.empty()) return "vistrel: no display: DISPLAY is not set";
  return "vistrel: cannot connect to the display \"" + name + "\"";
}

/// With its release, in numbers of its own.
std::string vendorOf(const Connection& connection) {
  const auto* setup = xcb_get_setup(connection.xcb());
  const auto length = static_cast<std::size_t>(xcb_setup_vendor_length(setup));
  return std::string(xcb_setup_vendor(setup), length) + " " + std::to_string(setup->release_number);
}

std::string description(const Connection& connection, const SessionFacts& facts) {
  std::string text = "X11 lists, captures and moves windows on " + displayName() + ", served by " +
                     vendorOf(connection) + "; manager: " + facts.managerName.value_or("none");
  for (const auto& each : facts.missingForCapture) text += "; not offered: " + each;
  return text;
}

/// Without a claim it is one instance of several. `connection` is for requests of the main thread,
/// each of which waits for its answer.
std::unique_ptr<Session> sessionOver(std::shared_ptr<Connection> connection,
                                     std::shared_ptr<InstanceClaim> claim, OpenSource openSource) {
  const auto panelQueue = SerialQueue::make("vistrel.panels", QualityOfService::userInteractive);
  auto session = std::make_unique<Session>();
  session->layout = std::make_shared<SharedScreenLayout>();
  session->panelWindows = std::make_unique<X11PanelWindows>(connection, panelQueue);
  session->instance = std::make_unique<X11ProgramInstance>(std::move(claim), panelQueue);
  session->monitors = std::make_unique<X11Monitors>(connection);
  session->dockAreas = std::make_unique<X11DockAreas>(panelQueue);
  session->contextMenuKeys = std::make_unique<X11ContextMenuKeys>(panelQueue);
  session->windowActivation = std::make_unique<X11WindowActivation>(connection);
  session->windowLister = std::make_unique<ShareableContentService>(session->layout);
  session->windowStreams = std::make_unique<X11WindowStreams>(connection, std::move(openSource));
  const auto command = std::make_shared<CommandDeadline>();
  const auto hiddenDisplays =
      std::make_shared<X11VirtualDisplays>(connection, session->layout, command);
  session->hiddenDisplays = hiddenDisplays;
  session->displays = std::make_unique<X11Displays>(connection, session->layout, hiddenDisplays);
  const auto parked = std::make_shared<ParkedWindows>(connection, session->layout, command);
  session->sourceSituations = std::make_unique<X11SourceSituations>(connection, parked);
  session->otherWindows = std::make_unique<X11Accessibility>(connection, parked);
  session->parkedSources = parked;
  session->clearMonitors = [hiddenDisplays, parked] {
    for (const auto& move : hiddenDisplays->getOutOfTheWay()) parked->follow(move.from, move.to);
  };
  session->facts = [connection] {
    return SessionFacts{.missingForCapture = connection->extensions().missingForCapture,
                        .managerName = managerName(*connection)};
  };
  trace(TraceTopic::start, [&] { return description(*connection, session->facts()); });
  return session;
}

/// What programs of ours have left that have ended without a guard: windows before the monitors
/// that they are on.
void tidyUpAfterOthers(Connection& connection) {
  constexpr double longest = 1;
  const bool areHome = bringAbandonedHome(connection, monotonicNow() + longest);
  removeAbandonedMonitors(connection);
  // A guard has all the time that a manager takes to answer.
  if (!areHome) startGuard({});
}

}  // namespace

SessionOrFailure openX11Session(Instances instances, OpenSource openSource) {
  std::shared_ptr<Connection> connection = openQuietly();
  if (!connection) return {nullptr, failureToConnect()};
  InstanceClaim::OrShown start;
  if (instances == Instances::one) {
    start = InstanceClaim::take(environmentVariable("DESKTOP_STARTUP_ID"));
  }
  if (start.isShown) return {};
  tidyUpAfterOthers(*connection);
  return {sessionOver(std::move(connection), std::move(start.claim), std::move(openSource)), {}};
}

}  // namespace vistrel::platform::linux_desktop
