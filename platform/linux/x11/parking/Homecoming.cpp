#include "platform/linux/x11/parking/Homecoming.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "platform/linux/Trace.h"
#include "platform/linux/x11/manager/Manager.h"
#include "platform/linux/x11/manager/PlaceRequest.h"
#include "platform/linux/x11/manager/VisibleFrame.h"
#include "platform/linux/x11/server/FaultPoint.h"
#include "platform/linux/x11/server/Property.h"
#include "platform/linux/x11/server/ServerGrab.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// Where it stands or where it will: a window without ties, in the layer it had.
void putInPlace(Connection& connection, xcb_window_t window, const ParkingRecord& record,
                double deadline) {
  // It may have become full-screen where it is.
  takeOffTies(connection, window, deadline);
  VISTREL_FAULT_POINT(connection, "home: untied");
  if (record.layer) {
    if (!record.layer->isBelow) setState(connection, window, false, belowState);
    if (record.layer->isAbove) setState(connection, window, true, aboveState);
    VISTREL_FAULT_POINT(connection, "home: in its layer");
  }
  const auto place = FramedWindowRequest(connection, window, connection.root()).fetch();
  if (!place) return;
  requestPlace(connection, window, *record.client, place->decoration, deadline);
  VISTREL_FAULT_POINT(connection, "home: in its place");
}

void putBackOnDesktop(Connection& connection, xcb_window_t window, const ParkingRecord& record) {
  // awesome 4.3 goes on showing a window on every desktop that it has once been on, and jwm 2.4.3
  // goes on to say so.
  if (!record.isSticky && hasState(connection, window, stickyState)) {
    setState(connection, window, false, stickyState);
  }
  setDesktop(connection, window, *record.desktop);
  VISTREL_FAULT_POINT(connection, "home: on its desktop");
}

void setProperty(Connection& connection, xcb_window_t window, std::string_view name,
                 xcb_atom_t type, const std::vector<std::uint32_t>& values) {
  forgive(connection.xcb(),
          xcb_change_property_checked(connection.xcb(), XCB_PROP_MODE_REPLACE, window,
                                      connection.atom(name), type, 32,
                                      static_cast<std::uint32_t>(values.size()), values.data()));
}

/// For the manager to find that takes the window over next: they begin with what stands on windows.
void leaveStates(Connection& connection, xcb_window_t window, const ParkingRecord& record) {
  auto states = propertyOf(connection, window, "_NET_WM_STATE").values();
  const auto leave = [&](const char* state, bool isOn) {
    std::erase(states, connection.atom(state));
    if (isOn) states.push_back(connection.atom(state));
  };
  leave(horizontalState, record.ties.horizontally);
  leave(verticalState, record.ties.vertically);
  leave(fullScreenState, record.ties.fullScreen);
  leave(stickyState, record.isSticky);
  if (record.layer) {
    leave(aboveState, record.layer->isAbove);
    leave(belowState, record.layer->isBelow);
  }
  setProperty(connection, window, "_NET_WM_STATE", XCB_ATOM_ATOM, states);
  if (record.desktop) {
    setProperty(connection, window, "_NET_WM_DESKTOP", XCB_ATOM_CARDINAL, {*record.desktop});
  }
}

/// Makes `by` the owner of a window whose owner has ended; none where there is none such.
std::optional<ParkingRecord> takeOver(Connection& connection, xcb_window_t window,
                                      const ParkingOwner& by) {
  // So that of several who look at the same moment one alone finds it abandoned.
  const ServerGrab grab(connection);
  auto record = readRecord(connection, window);
  if (!record || isAlive(connection, record->owner)) return std::nullopt;
  record->owner = by.id();
  writeRecord(connection, window, *record);
  return record;
}

}  // namespace

bool bringHome(Connection& connection, xcb_window_t window, const ParkingRecord& record,
               double deadline) {
  trace(TraceTopic::manager, [&] { return windowText(window) + " goes home"; });
  const bool isManaged = hasManager(connection);
  // Whoever has left the window here may have asked for something since.
  if (!awaitManagerUntil(connection, deadline)) return false;
  if (record.client) putInPlace(connection, window, record, deadline);
  if (isManaged) {
    // Those that it has already, xfwm4 4.18.0, mutter 43.8 and marco 1.26.1 would take off a
    // full-screen window.
    putOnTies(connection, window, record.ties - tiesOf(connection, window));
    VISTREL_FAULT_POINT(connection, "home: tied");
    if (record.desktop) putBackOnDesktop(connection, window, record);
  } else {
    leaveStates(connection, window, record);
  }
  if (!awaitManagerUntil(connection, deadline)) return false;
  // One that has gone since takes what it was asked for along, or has done half of it.
  if (isManaged != hasManager(connection)) return bringHome(connection, window, record, deadline);
  removeRecord(connection, window);
  VISTREL_FAULT_POINT(connection, "home: record removed");
  return true;
}

bool bringAbandonedHome(Connection& connection, double deadline) {
  const ParkingOwner self(connection);
  bool isNoneLeft = true;
  for (const auto window : recordedWindows(connection)) {
    if (!readRecord(connection, window)) {
      removeRecord(connection, window);
    } else if (const auto record = takeOver(connection, window, self)) {
      isNoneLeft = bringHome(connection, window, *record, deadline) && isNoneLeft;
    }
  }
  return isNoneLeft;
}

}  // namespace vistrel::platform::linux_desktop
