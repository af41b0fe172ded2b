#include "platform/linux/x11/parking/WindowStates.h"

#include "platform/linux/x11/manager/Manager.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// One or two states in one message.
void setStates(Connection& connection, xcb_window_t window, bool areOn, const char* state,
               const char* another) {
  const std::uint32_t second = another ? connection.atom(another) : xcb_atom_t{XCB_ATOM_NONE};
  tellManager(connection, window, "_NET_WM_STATE",
              {areOn ? 1U : 0U, connection.atom(state), second, byPerson, 0});
}

}  // namespace

Ties tiesOf(Connection& connection, xcb_window_t window) {
  return {.horizontally = hasState(connection, window, horizontalState),
          .vertically = hasState(connection, window, verticalState),
          .fullScreen = hasState(connection, window, fullScreenState)};
}

void takeOffTies(Connection& connection, xcb_window_t window, double deadline) {
  if (tiesOf(connection, window).fullScreen) {
    setState(connection, window, false, fullScreenState);
    // openbox 3.6.1 and mutter 43.8 tell only after this what a window was before.
    awaitManagerUntil(connection, deadline);
  }
  const Ties left = tiesOf(connection, window);
  if (!left.horizontally && !left.vertically) return;
  takeOffMaximised(connection, window);
  awaitManagerUntil(connection, deadline);
}

void takeOffMaximised(Connection& connection, xcb_window_t window) {
  setStates(connection, window, false, horizontalState, verticalState);
}

void putOnTies(Connection& connection, xcb_window_t window, const Ties& ties) {
  if (ties.horizontally && ties.vertically) {
    // xfwm4 4.18.0 takes two messages in a row for a change of mind.
    setStates(connection, window, true, horizontalState, verticalState);
  } else if (ties.horizontally || ties.vertically) {
    setState(connection, window, true, ties.horizontally ? horizontalState : verticalState);
  }
  if (ties.fullScreen) setState(connection, window, true, fullScreenState);
}

void setState(Connection& connection, xcb_window_t window, bool isOn, const char* state) {
  setStates(connection, window, isOn, state, nullptr);
}

void setDesktop(Connection& connection, xcb_window_t window, std::uint32_t desktop) {
  tellManager(connection, window, "_NET_WM_DESKTOP", {desktop, byPerson, 0, 0, 0});
}

}  // namespace vistrel::platform::linux_desktop
