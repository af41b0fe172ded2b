#include "platform/linux/x11/panel/FloatingPanel.h"

#include <algorithm>
#include <initializer_list>

#include "platform/linux/x11/manager/Manager.h"
#include "platform/linux/x11/server/Property.h"

namespace vistrel::platform::linux_desktop {
namespace {

constexpr std::string_view above = "_NET_WM_STATE_ABOVE";
constexpr std::string_view sticky = "_NET_WM_STATE_STICKY";
constexpr std::string_view skipTaskbar = "_NET_WM_STATE_SKIP_TASKBAR";
constexpr std::string_view skipPager = "_NET_WM_STATE_SKIP_PAGER";
constexpr std::string_view demandsAttention = "_NET_WM_STATE_DEMANDS_ATTENTION";
constexpr std::string_view desktop = "_NET_WM_DESKTOP";

void setAtoms(Connection& connection, xcb_window_t window, std::string_view property,
              std::initializer_list<std::string_view> names) {
  std::vector<xcb_atom_t> atoms;
  for (const auto name : names) atoms.push_back(connection.atom(name));
  xcb_change_property(connection.xcb(), XCB_PROP_MODE_REPLACE, window, connection.atom(property),
                      XCB_ATOM_ATOM, 32, static_cast<std::uint32_t>(atoms.size()), atoms.data());
}

constexpr std::string_view types = "_NET_WM_WINDOW_TYPE";
constexpr std::string_view utility = "_NET_WM_WINDOW_TYPE_UTILITY";
constexpr std::string_view dialog = "_NET_WM_WINDOW_TYPE_DIALOG";
constexpr std::string_view normal = "_NET_WM_WINDOW_TYPE_NORMAL";
constexpr std::string_view criticalNotification = "_KDE_NET_WM_WINDOW_TYPE_CRITICAL_NOTIFICATION";

}  // namespace

void makeFloating(Connection& connection, xcb_window_t window) {
  setAtoms(connection, window, types, {utility, dialog, normal});
  setAtoms(connection, window, "WM_PROTOCOLS", {"WM_DELETE_WINDOW", "_NET_WM_PING"});
  setAtoms(connection, window, "_NET_WM_STATE", {above, sticky, skipTaskbar, skipPager});
  xcb_change_property(connection.xcb(), XCB_PROP_MODE_REPLACE, window, connection.atom(desktop),
                      XCB_ATOM_CARDINAL, 32, 1, &everyDesktop);
  // Whoever maps the window does it on a connection of its own, after this.
  connection.sync();
  while (connection.pollEvent())
    continue;  // no events are asked for here: it looks for errors alone
}

void setAboveFullScreen(Connection& connection, xcb_window_t window, bool isAbove) {
  if (isAbove) {
    setAtoms(connection, window, types, {criticalNotification, utility, dialog, normal});
  } else {
    setAtoms(connection, window, types, {utility, dialog, normal});
  }
  // KWin 5.27.5 finds such a window's new place only when it is put there next.
  putAboveAnew(connection, window);
}

void putAboveAnew(Connection& connection, xcb_window_t window) {
  for (const bool isWanted : {false, true}) {
    askManager(connection, window, {above, isWanted});
  }
}

void keepOffLists(Connection& connection, xcb_window_t window) {
  setAtoms(connection, window, "_NET_WM_STATE", {skipTaskbar, skipPager});
  connection.sync();
}

std::vector<StateChange> missingToFloat(Connection& connection, xcb_window_t window,
                                        bool isAboveItself) {
  const auto states = propertyOf(connection, window, "_NET_WM_STATE").values();
  const auto has = [&](std::string_view state) {
    return std::find(states.begin(), states.end(), connection.atom(state)) != states.end();
  };
  std::vector<StateChange> missing;
  if (isAboveItself && !has(above)) missing.push_back({above});
  for (const auto state : {skipTaskbar, skipPager}) {
    if (!has(state)) missing.push_back({state});
  }
  // Managers keep one of the two: openbox 3.6.1 the second, awesome 4.3 the first.
  if (!has(sticky) && propertyOf(connection, window, desktop).firstValue() != everyDesktop) {
    missing.push_back({sticky});
    missing.push_back({desktop});
  }
  // KWin 5.27.5 sets it on whatever is mapped or raised without getting the keyboard.
  if (has(demandsAttention)) missing.push_back({demandsAttention, false});
  return missing;
}

void askManager(Connection& connection, xcb_window_t window, const StateChange& change) {
  if (change.name == desktop) {
    return tellManager(connection, window, desktop, {everyDesktop, byPerson});
  }
  // EWMH, _NET_WM_STATE: 1 adds, 0 removes.
  tellManager(connection, window, "_NET_WM_STATE",
              {change.isWanted ? 1U : 0U, connection.atom(change.name), 0, byPerson});
}

void withdraw(Connection& connection, xcb_window_t window) {
  xcb_unmap_notify_event_t event{};
  event.response_type = XCB_UNMAP_NOTIFY;
  event.event = connection.root();
  event.window = window;
  xcb_send_event(connection.xcb(), 0, connection.root(),
                 XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&event));
}

}  // namespace vistrel::platform::linux_desktop
