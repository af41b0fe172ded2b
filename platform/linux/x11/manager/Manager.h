#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/linux/PixelRect.h"
#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

// The window manager, as EWMH lets programs talk to it.

/// Who asks, in messages to the manager (EWMH, "Source indication in requests"): a person, by a
/// tool of theirs.
inline constexpr std::uint32_t byPerson = 2;

/// The number that stands for all desktops (EWMH, _NET_WM_DESKTOP).
inline constexpr std::uint32_t everyDesktop = 0xffffffff;

/// What WM_STATE says of a window whose manager shows at most an icon of it (ICCCM 4.1.3.1):
/// one that is minimised, or put away in another way. docs/quirks.md says who does that.
inline constexpr std::uint32_t iconicState = 3;

/// The window by which a manager shows that it runs and follows EWMH (_NET_SUPPORTING_WM_CHECK);
/// another manager has another one. None where no such manager runs.
std::optional<xcb_window_t> managersWindow(Connection& connection);
bool hasManager(Connection& connection);
/// What it calls itself; empty where it does not say, none where no manager runs.
std::optional<std::string> managerName(Connection& connection);
/// The selection that a compositing manager owns as long as it runs (EWMH, "_NET_WM_CM_Sn").
xcb_atom_t compositorSelection(Connection& connection);
bool isComposited(Connection& connection);
/// Whether `hint` is among what it says it supports (_NET_SUPPORTED).
bool managerSupports(Connection& connection, std::string_view hint);

/// Whether it has put the window into `state` (_NET_WM_STATE).
bool hasState(Connection& connection, xcb_window_t window, std::string_view state);
/// As EWMH's _NET_WM_STATE_HIDDEN marks windows that would not be seen on their own desktop either:
/// minimised ones, wherever they are.
bool isMarkedHidden(Connection& connection, xcb_window_t window);
/// Whether the window is mapped, and all that it lies in.
bool isViewable(Connection& connection, xcb_window_t window);
/// The desktop that the window is on (EWMH, _NET_WM_DESKTOP), where that one is not shown.
std::optional<std::uint32_t> hiddenDesktopOf(Connection& connection, xcb_window_t window);

/// Whether the window is a dock or the desktop's own (EWMH, _NET_WM_WINDOW_TYPE): those follow the
/// screen by themselves, and lie above or below all ordinary ones.
bool isPartOfDesktop(Connection& connection, xcb_window_t window);

/// Sends it a message about `window`, to the root window as all of them go.
void tellManager(Connection& connection, xcb_window_t window, std::string_view message,
                 const std::array<std::uint32_t, 5>& data);

/// How long a manager is waited for where nothing else is said, in seconds.
inline constexpr double managersTime = 2;

/// Waits until the manager has seen what happened on the display before this call, which it does in
/// order; until the monotonic clock has reached `deadline` seconds at most, which may be infinity.
/// Whether it has; false as well when the display is lost. Without a manager nobody has to.
/// `connection` listens to no events of windows.
bool awaitManagerUntil(Connection& connection, double deadline);
/// For two seconds at most.
void awaitManager(Connection& connection);

/// Whether the manager says how large its desktop is (_NET_DESKTOP_GEOMETRY), which
/// `managerReaches` goes by; without a manager nobody has to.
bool managerTellsItsReach(Connection& connection);

/// Whether the manager takes `area`, in pixels of the root window, for a part of the desktop: where
/// it does not, it keeps windows away from there. Waits until it has had time to notice that the
/// screen has grown: for its answers until `deadline` at most, and half a second longer for one
/// that answers. Without a manager everything is. `connection` listens to no events.
bool managerReaches(Connection& connection, const PixelRect& area, double deadline);

}  // namespace vistrel::platform::linux_desktop
