#include "platform/linux/x11/manager/Manager.h"

#include <algorithm>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/Trace.h"
#include "platform/linux/Utf8.h"
#include "platform/linux/x11/server/AwaitedEvents.h"
#include "platform/linux/x11/server/Events.h"
#include "platform/linux/x11/server/Property.h"
#include "platform/linux/x11/server/TextDecoding.h"
#include "platform/linux/x11/server/UnseenWindow.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// Waits for a change of a property of `window`, on which `connection` is to listen to nothing
/// else, until `isAsWanted`; false when it is not by the deadline.
bool awaitProperty(Connection& connection, xcb_window_t window, double deadline,
                   const std::function<bool()>& isAsWanted) {
  forgive(connection.xcb(), connection.selectEvents(window, XCB_EVENT_MASK_PROPERTY_CHANGE));
  const bool holds = awaitEvents(
      connection, deadline, [](const xcb_generic_event_t&) {}, isAsWanted);
  forgive(connection.xcb(), connection.selectEvents(window, XCB_EVENT_MASK_NO_EVENT));
  return holds;
}

/// Whether the list of atoms that a property is holds `atom`.
bool holds(Connection& connection, xcb_window_t window, std::string_view list,
           std::string_view atom) {
  const auto atoms = propertyOf(connection, window, list).values();
  return std::find(atoms.begin(), atoms.end(), connection.atom(atom)) != atoms.end();
}

/// Asks the manager for another place for a window that it does not manage, which any manager
/// grants at once (ICCCM 4.1.5); whether it has by the deadline. Messages are no such question:
/// fluxbox 1.3.5 leaves _NET_REQUEST_FRAME_EXTENTS unanswered about such a window, though it lists
/// it, and KWin 5.27.5 and awesome 4.3 do not list it.
bool isAnswered(Connection& connection, double deadline) {
  const OwnWindow probe = makeUnseenWindow(connection, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
  constexpr std::uint32_t elsewhere = 1;
  xcb_configure_window(connection.xcb(), probe.id(), XCB_CONFIG_WINDOW_X, &elsewhere);
  connection.flush();
  bool isThere = false;
  const auto look = [&](const xcb_generic_event_t& event) {
    isThere = isThere || (typeOf(event) == XCB_CONFIGURE_NOTIFY &&
                          eventAs<xcb_configure_notify_event_t>(event).window == probe.id());
  };
  awaitEvents(connection, deadline, look, [&] { return isThere; });
  forgive(connection.xcb(), connection.selectEvents(probe.id(), XCB_EVENT_MASK_NO_EVENT));
  return isThere;
}

/// EWMH: the width of every desktop.
std::optional<std::uint32_t> desktopWidth(Connection& connection) {
  return propertyOf(connection, connection.root(), "_NET_DESKTOP_GEOMETRY").firstValue();
}

bool covers(Connection& connection, const PixelRect& area) {
  const auto width = desktopWidth(connection);
  return width && static_cast<std::int64_t>(*width) >= area.x + area.width;
}

}  // namespace

std::optional<xcb_window_t> managersWindow(Connection& connection) {
  // One that has gone leaves the property on the root; a living one shows on the window itself.
  constexpr auto check = "_NET_SUPPORTING_WM_CHECK";
  const auto window = propertyOf(connection, connection.root(), check).firstValue();
  if (!window || propertyOf(connection, *window, check).firstValue() != window) return std::nullopt;
  return window;
}

bool hasManager(Connection& connection) { return managersWindow(connection).has_value(); }

std::optional<std::string> managerName(Connection& connection) {
  const auto window = managersWindow(connection);
  if (!window) return std::nullopt;
  return repairedUtf8(upToNull(propertyOf(connection, *window, "_NET_WM_NAME").bytes()));
}

bool managerSupports(Connection& connection, std::string_view hint) {
  return hasManager(connection) && holds(connection, connection.root(), "_NET_SUPPORTED", hint);
}

bool hasState(Connection& connection, xcb_window_t window, std::string_view state) {
  return holds(connection, window, "_NET_WM_STATE", state);
}

bool isMarkedHidden(Connection& connection, xcb_window_t window) {
  return hasState(connection, window, "_NET_WM_STATE_HIDDEN");
}

bool isViewable(Connection& connection, xcb_window_t window) {
  const auto attributes = replyTo<xcb_get_window_attributes_reply>(
      connection.xcb(), xcb_get_window_attributes(connection.xcb(), window));
  return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

std::optional<std::uint32_t> hiddenDesktopOf(Connection& connection, xcb_window_t window) {
  const auto desktop = propertyOf(connection, window, "_NET_WM_DESKTOP").firstValue();
  const auto shown = propertyOf(connection, connection.root(), "_NET_CURRENT_DESKTOP").firstValue();
  const bool isHidden = desktop && shown && desktop != everyDesktop && desktop != shown;
  return isHidden ? desktop : std::nullopt;
}

bool isPartOfDesktop(Connection& connection, xcb_window_t window) {
  const auto type = propertyOf(connection, window, "_NET_WM_WINDOW_TYPE").firstValue();
  constexpr std::array types{"_NET_WM_WINDOW_TYPE_DESKTOP", "_NET_WM_WINDOW_TYPE_DOCK"};
  return type && std::any_of(types.begin(), types.end(),
                             [&](const char* each) { return connection.atom(each) == *type; });
}

void tellManager(Connection& connection, xcb_window_t window, std::string_view message,
                 const std::array<std::uint32_t, 5>& data) {
  xcb_client_message_event_t event{};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 32;
  event.window = window;
  event.type = connection.atom(message);
  std::copy(data.begin(), data.end(), event.data.data32);
  xcb_send_event(connection.xcb(), 0, connection.root(),
                 XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&event));
}

bool awaitManagerUntil(Connection& connection, double deadline) {
  do {
    // One that has gone meanwhile has taken the question along.
    const double patience = std::min(deadline, monotonicNow() + managersTime);
    // Twice, since a manager may put off what it was told until it has read all that has come in
    // (awesome 4.3).
    if (isAnswered(connection, patience) && isAnswered(connection, patience)) return true;
  } while (monotonicNow() < deadline && !connection.isLost());
  trace(TraceTopic::manager, [] { return "no answer in time; nobody waits any longer"; });
  return false;
}

void awaitManager(Connection& connection) {
  awaitManagerUntil(connection, monotonicNow() + managersTime);
}

bool managerTellsItsReach(Connection& connection) {
  return !hasManager(connection) || desktopWidth(connection);
}

bool managerReaches(Connection& connection, const PixelRect& area, double deadline) {
  if (!hasManager(connection)) return true;
  // mutter 43.8 takes notice some time after it has been told.
  constexpr double grace = 0.5;
  // A manager that leaves out what no output shows (xfwm4 4.18.0, KWin 5.27.5) does not count it in
  // here either.
  const auto isCovered = [&] { return covers(connection, area); };
  bool isReached = awaitManagerUntil(connection, deadline) &&
                   awaitProperty(connection, connection.root(), monotonicNow() + grace, isCovered);
  if (!isReached) {
    // It may have been held up all the while.
    awaitManagerUntil(connection, deadline);
    isReached = isCovered();
  }
  trace(TraceTopic::manager, [&] {
    return (isReached ? "its desktop reaches " : "its desktop does not reach ") + areaText(area);
  });
  return isReached;
}

}  // namespace vistrel::platform::linux_desktop
