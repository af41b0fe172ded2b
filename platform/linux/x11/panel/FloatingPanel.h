#pragma once

#include <string_view>
#include <vector>

#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// Makes `window` a panel that floats: above all windows and on every desktop, out of taskbar and
/// pager, of the type UTILITY without being a transient of the program's other windows (which Qt
/// 6.4.2 makes of such a window), which would put it away with them, and with protocols that offer
/// neither focus (ICCCM `WM_TAKE_FOCUS`) nor synchronised resizing (`_NET_WM_SYNC_REQUEST`, which
/// only Qt's own drawing answers). By
/// EWMH's properties, each time before the window is mapped: managers take some of them away from a
/// window that is withdrawn. Returns once they are set.
///
/// Whoever makes the window asks for the rest, which managers read from hints that its maker writes
/// as well: no decoration, no keyboard, no activation when it is mapped. That it stays so is up to
/// `FloatingPanels`.
void makeFloating(Connection& connection, xcb_window_t window);

/// Makes a panel that is mapped what KWin shows above active full-screen windows, native ones too:
/// a critical notification (`_KDE_NET_WM_WINDOW_TYPE_CRITICAL_NOTIFICATION`, of KDE's own). To
/// other managers that is no type at all.
void setAboveFullScreen(Connection& connection, xcb_window_t window, bool isAbove);
/// Has the manager put a panel above other windows again, be it above them already.
void putAboveAnew(Connection& connection, xcb_window_t window);

/// Keeps a window that nobody sees out of taskbar and pager. To be called before it is mapped.
void keepOffLists(Connection& connection, xcb_window_t window);

/// What a manager is to change about a window that it shows.
struct StateChange {
  /// An atom of _NET_WM_STATE, or _NET_WM_DESKTOP for every desktop.
  std::string_view name;
  bool isWanted = true;
};
/// What there is to change so that `window` is in the state that it was mapped in; whether it is
/// above others counts where `isAboveItself`.
std::vector<StateChange> missingToFloat(Connection& connection, xcb_window_t window,
                                        bool isAboveItself);
void askManager(Connection& connection, xcb_window_t window, const StateChange& change);
/// Tells the manager that `window`, which is not mapped, is none of its business any more (ICCCM
/// 4.1.4).
void withdraw(Connection& connection, xcb_window_t window);

}  // namespace vistrel::platform::linux_desktop
