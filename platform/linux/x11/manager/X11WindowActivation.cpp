#include "platform/linux/x11/manager/X11WindowActivation.h"

#include <algorithm>
#include <vector>

#include "platform/linux/Trace.h"
#include "platform/linux/x11/manager/ClientWindows.h"
#include "platform/linux/x11/manager/Manager.h"
#include "platform/linux/x11/manager/TopLevel.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// On the desktop that is shown, else on another one, else minimised.
xcb_window_t frontmost(Connection& connection, const std::vector<xcb_window_t>& windows) {
  const auto shown = std::find_if(windows.begin(), windows.end(),
                                  [&](auto each) { return isViewable(connection, each); });
  if (shown != windows.end()) return *shown;
  const auto open = std::find_if(windows.begin(), windows.end(),
                                 [&](auto each) { return !isMarkedHidden(connection, each); });
  return open != windows.end() ? *open : windows.front();
}

/// Among windows, rather than as a part of the desktop around them.
bool isShown(Connection& connection, xcb_window_t window) {
  return isViewable(connection, window) && !isMarkedHidden(connection, window) &&
         !hiddenDesktopOf(connection, window) && !isPartOfDesktop(connection, window);
}

void raiseInLayer(Connection& connection, xcb_window_t window) {
  constexpr std::uint32_t above = XCB_STACK_MODE_ABOVE;
  failureOf(connection.xcb(), xcb_configure_window_checked(connection.xcb(), window,
                                                           XCB_CONFIG_WINDOW_STACK_MODE, &above));
}

void raiseByPerson(Connection& connection, xcb_window_t window) {
  constexpr auto restack = "_NET_RESTACK_WINDOW";
  if (!managerSupports(connection, restack)) return raiseInLayer(connection, window);
  tellManager(connection, window, restack, {byPerson, XCB_WINDOW_NONE, XCB_STACK_MODE_ABOVE});
}

/// Before the windows are raised: openbox 3.6.1, xfwm4 4.18.0 and mutter 43.8 do not go to their
/// desktop by themselves, and a manager may bring them to the one that is shown.
void showDesktopOf(Connection& connection, xcb_window_t window) {
  const auto desktop = hiddenDesktopOf(connection, window);
  if (desktop) tellManager(connection, connection.root(), "_NET_CURRENT_DESKTOP", {*desktop});
}

void sendActivation(Connection& connection, xcb_window_t window, xcb_timestamp_t time) {
  trace(TraceTopic::manager, [&] { return windowText(window) + " is to get the keyboard"; });
  tellManager(connection, window, "_NET_ACTIVE_WINDOW", {byPerson, time, XCB_WINDOW_NONE});
  connection.sync();
}

/// Whether another program's window lies between some of `windows`, as far as they are shown.
bool areDivided(Connection& connection, const std::vector<xcb_window_t>& windows) {
  auto all = topmostFirst(connection, clientWindows(connection));
  std::erase_if(all, [&](xcb_window_t each) { return !isShown(connection, each); });
  const auto isOurs = [&](xcb_window_t each) {
    return std::find(windows.begin(), windows.end(), each) != windows.end();
  };
  const auto first = std::find_if(all.begin(), all.end(), isOurs);
  const auto next = std::find_if_not(first, all.end(), isOurs);
  return std::any_of(next, all.end(), isOurs);
}

}  // namespace

bool X11WindowActivation::hasWindows(std::int32_t processID) {
  return !clientWindowsOf(*connection_, processID).empty();
}

bool X11WindowActivation::activateWindows(std::int32_t processID) {
  auto& connection = *connection_;
  const auto windows = topmostFirst(connection, clientWindowsOf(connection, processID));
  if (windows.empty()) return false;
  const auto front = frontmost(connection, windows);
  showDesktopOf(connection, front);
  std::for_each(windows.rbegin(), windows.rend(), [&](xcb_window_t each) {
    if (each != front && !isMarkedHidden(connection, each)) raiseByPerson(connection, each);
  });
  raiseByPerson(connection, front);
  sendActivation(connection, front, XCB_CURRENT_TIME);
  awaitManager(connection);
  if (!areDivided(connection, windows)) return true;
  // marco 1.26.1, fluxbox 1.3.5 and awesome 4.3 raise none but what is activated.
  std::for_each(windows.rbegin(), windows.rend(), [&](xcb_window_t each) {
    if (each != front && isShown(connection, each)) {
      sendActivation(connection, each, XCB_CURRENT_TIME);
    }
  });
  sendActivation(connection, front, XCB_CURRENT_TIME);
  return true;
}

void X11WindowActivation::activateWindow(std::uint32_t window, std::uint32_t time) {
  // To the manager it is left whether that is still what the person wants.
  showDesktopOf(*connection_, window);
  sendActivation(*connection_, window, time);
}

void X11WindowActivation::raise(std::uint32_t window) { raiseInLayer(*connection_, window); }

}  // namespace vistrel::platform::linux_desktop
