#pragma once

#include <cstdint>

#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

// What a window has by its manager's word (EWMH) that parking takes off and gives back.

inline constexpr auto stickyState = "_NET_WM_STATE_STICKY";
inline constexpr auto aboveState = "_NET_WM_STATE_ABOVE";
inline constexpr auto belowState = "_NET_WM_STATE_BELOW";
inline constexpr auto fullScreenState = "_NET_WM_STATE_FULLSCREEN";
inline constexpr auto horizontalState = "_NET_WM_STATE_MAXIMIZED_HORZ";
inline constexpr auto verticalState = "_NET_WM_STATE_MAXIMIZED_VERT";

/// The states that a manager derives a window's place and size from.
struct Ties {
  bool horizontally = false;
  bool vertically = false;
  bool fullScreen = false;

  friend bool operator==(const Ties&, const Ties&) = default;
  /// Those of `a` that are not in `b`.
  friend Ties operator-(const Ties& a, const Ties& b) {
    return {.horizontally = a.horizontally && !b.horizontally,
            .vertically = a.vertically && !b.vertically,
            .fullScreen = a.fullScreen && !b.fullScreen};
  }
};

/// The states that keep a window above others, or below them.
struct StackingLayer {
  bool isAbove = false;
  bool isBelow = false;

  friend bool operator==(const StackingLayer&, const StackingLayer&) = default;
};

/// Those that the manager says a window has; of a full-screen one it may keep the others to itself.
Ties tiesOf(Connection& connection, xcb_window_t window);

// Each asks the manager, and waits for it until the deadline only where it says so.

/// Takes off whatever ties there are, with waiting.
void takeOffTies(Connection& connection, xcb_window_t window, double deadline);
void takeOffMaximised(Connection& connection, xcb_window_t window);
void putOnTies(Connection& connection, xcb_window_t window, const Ties& ties);
void setState(Connection& connection, xcb_window_t window, bool isOn, const char* state);
void setDesktop(Connection& connection, xcb_window_t window, std::uint32_t desktop);

}  // namespace vistrel::platform::linux_desktop
