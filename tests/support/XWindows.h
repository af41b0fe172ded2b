#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

#include "tests/support/Rect.h"
#include "tests/support/XConnection.h"

namespace vistrel::testbed {

/// Questions about windows of any program. A window that is gone has no properties, is not viewable
/// and has no place.

/// The programs' own windows that say they belong to process `pid` (EWMH 1.5, _NET_WM_PID), in the
/// server's tree order.
std::vector<xcb_window_t> windowsOfProcess(const XConnection& connection, pid_t pid);

/// Whether it and all its parents are mapped.
bool isViewable(const XConnection& connection, xcb_window_t window);
/// Whether it is none of the window manager's business, as a menu is (override-redirect).
bool isUnmanaged(const XConnection& connection, xcb_window_t window);
/// Whether it is a part of another program's window, as an icon in a tray is.
bool isEmbedded(const XConnection& connection, xcb_window_t window);
/// Its area without its border, in root coordinates.
std::optional<Rect> areaOf(const XConnection& connection, xcb_window_t window);
/// The window's title, UTF-8 (_NET_WM_NAME).
std::string titleOf(const XConnection& connection, xcb_window_t window);
/// Whether _NET_WM_STATE holds the atom `state`.
bool hasState(const XConnection& connection, xcb_window_t window, std::string_view state);
/// The child of the root that holds it: the manager's frame, or the window itself.
xcb_window_t topLevelOf(const XConnection& connection, xcb_window_t window);
/// The pointer as the server knows it.
struct PointerState {
  /// In root coordinates.
  Point place;
  /// The child of the root that it is over, by its shape; none over the root itself.
  xcb_window_t topLevel = XCB_WINDOW_NONE;
  /// The buttons and modifiers that are held (xcb_key_but_mask_t).
  std::uint16_t held = 0;
};
PointerState pointerOn(const XConnection& connection);
/// Children of the root, lowest first.
std::vector<xcb_window_t> stackingOrder(const XConnection& connection);
/// Whether `upper` lies above `lower`, by their top-level windows.
bool isAbove(const XConnection& connection, xcb_window_t upper, xcb_window_t lower);
/// The window with the keyboard focus.
xcb_window_t focusedWindow(const XConnection& connection);
/// What the manager's frame adds to each side of a window.
struct FrameExtents {
  int left = 0;
  int right = 0;
  int top = 0;
  int bottom = 0;
};
/// EWMH 1.5, _NET_FRAME_EXTENTS; none when the manager has not set it.
std::optional<FrameExtents> frameExtentsOf(const XConnection& connection, xcb_window_t window);

}  // namespace vistrel::testbed
