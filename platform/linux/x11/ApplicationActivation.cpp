#include "platform/linux/x11/ApplicationActivation.h"

#include <algorithm>
#include <array>
#include <list>
#include <vector>

#include "platform/linux/x11/ClientWindows.h"
#include "platform/linux/x11/ProcessIds.h"
#include "platform/linux/x11/Property.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// Who asks, in messages to the manager (EWMH, "Source indication in requests"): a person, by a
/// tool of theirs.
constexpr std::uint32_t byPerson = 2;

/// Topmost first.
std::vector<xcb_window_t> windowsOf(Connection& connection, std::int32_t processID) {
  const auto clients = clientWindows(connection);
  std::list<ProcessIdRequest> requests;
  for (const auto each : clients) requests.emplace_back(connection, each);
  std::vector<xcb_window_t> windows;
  auto request = requests.begin();
  for (const auto each : clients) {
    if ((request++)->fetch() == processID) windows.push_back(each);
  }
  return windows;
}

bool holds(Connection& connection, xcb_window_t window, std::string_view list,
           std::string_view atom) {
  const auto atoms = propertyOf(connection, window, list).values();
  return std::find(atoms.begin(), atoms.end(), connection.atom(atom)) != atoms.end();
}

bool isMinimised(Connection& connection, xcb_window_t window) {
  return holds(connection, window, "_NET_WM_STATE", "_NET_WM_STATE_HIDDEN");
}

bool isViewable(Connection& connection, xcb_window_t window) {
  const auto attributes = replyTo<xcb_get_window_attributes_reply>(
      connection.xcb(), xcb_get_window_attributes(connection.xcb(), window));
  return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

/// On the desktop that is shown, else on another one, else minimised.
xcb_window_t frontmost(Connection& connection, const std::vector<xcb_window_t>& windows) {
  const auto shown = std::find_if(windows.begin(), windows.end(),
                                  [&](auto each) { return isViewable(connection, each); });
  if (shown != windows.end()) return *shown;
  const auto open = std::find_if(windows.begin(), windows.end(),
                                 [&](auto each) { return !isMinimised(connection, each); });
  return open != windows.end() ? *open : windows.front();
}

void sendToManager(Connection& connection, xcb_window_t window, std::string_view type,
                   const std::array<std::uint32_t, 3>& data) {
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window;
  message.type = connection.atom(type);
  std::copy(data.begin(), data.end(), message.data.data32);
  xcb_send_event(connection.xcb(), 0, connection.root(),
                 XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&message));
}

void raise(Connection& connection, xcb_window_t window) {
  constexpr auto restack = "_NET_RESTACK_WINDOW";
  constexpr std::uint32_t above = XCB_STACK_MODE_ABOVE;
  if (holds(connection, connection.root(), "_NET_SUPPORTED", restack)) {
    return sendToManager(connection, window, restack, {byPerson, XCB_WINDOW_NONE, above});
  }
  // A window that has gone meanwhile needs no raising.
  failureOf(connection.xcb(), xcb_configure_window_checked(connection.xcb(), window,
                                                           XCB_CONFIG_WINDOW_STACK_MODE, &above));
}

/// Before the windows are raised: some managers would bring them to the desktop that is shown.
void showDesktopOf(Connection& connection, xcb_window_t window) {
  constexpr std::uint32_t everyDesktop = 0xffffffff;
  const auto desktop = propertyOf(connection, window, "_NET_WM_DESKTOP").firstValue();
  const auto shown = propertyOf(connection, connection.root(), "_NET_CURRENT_DESKTOP").firstValue();
  if (!desktop || desktop == everyDesktop || desktop == shown) return;
  sendToManager(connection, connection.root(), "_NET_CURRENT_DESKTOP", {*desktop});
}

void sendActivation(Connection& connection, xcb_window_t window, xcb_timestamp_t time) {
  sendToManager(connection, window, "_NET_ACTIVE_WINDOW", {byPerson, time, XCB_WINDOW_NONE});
  connection.sync();
}

}  // namespace

bool hasWindows(Connection& connection, std::int32_t processID) {
  return !windowsOf(connection, processID).empty();
}

bool activateWindows(Connection& connection, std::int32_t processID) {
  const auto windows = windowsOf(connection, processID);
  if (windows.empty()) return false;
  const auto front = frontmost(connection, windows);
  showDesktopOf(connection, front);
  std::for_each(windows.rbegin(), windows.rend(), [&](xcb_window_t each) {
    if (each != front && !isMinimised(connection, each)) raise(connection, each);
  });
  raise(connection, front);
  sendActivation(connection, front, XCB_CURRENT_TIME);
  return true;
}

void activateWindow(Connection& connection, xcb_window_t window, xcb_timestamp_t time) {
  showDesktopOf(connection, window);
  sendActivation(connection, window, time);
}

}  // namespace vistrel::platform::linux_desktop
