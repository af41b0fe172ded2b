#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/linux/PixelRect.h"
#include "platform/linux/x11/server/Property.h"

namespace vistrel::platform::linux_desktop {

/// Widths around a window, as `_NET_FRAME_EXTENTS` and `_GTK_FRAME_EXTENTS` carry them.
struct Extents {
  int left = 0;
  int right = 0;
  int top = 0;
  int bottom = 0;

  friend bool operator==(const Extents&, const Extents&) = default;
};

/// None at all when the property is missing, malformed or absurd.
Extents extentsFrom(const std::vector<std::uint32_t>& property);

/// What a person sees as the window: the client's inside with the manager's decoration around it
/// (`_NET_FRAME_EXTENTS`) or, where there is none, less the shadow that a client draws inside
/// itself (`_GTK_FRAME_EXTENTS`). In the space of `client`.
PixelRect visibleFrame(const PixelRect& client, const Extents& decoration, const Extents& shadow);

/// Whose work a window's decoration is.
enum class Decoration {
  /// The server's picture of the frame has it.
  inFrames,
  /// A compositing manager draws it into nothing but the picture of the whole screen.
  onScreenAlone,
};
Decoration decorationOf(Connection& connection);

/// Where a client's window is, and what of it a person sees, as it was at one moment.
struct FramedWindow {
  /// What belongs to the client, without borders.
  PixelRect client;
  /// The widths of the manager's frame around it.
  Extents decoration;
  /// What a person sees.
  PixelRect visible;
};

/// The same, asked for and yet to be read.
class FramedWindowRequest {
 public:
  /// In pixels of `reference`: the root window, or another that holds `client`.
  FramedWindowRequest(Connection& connection, xcb_window_t client, xcb_window_t reference);
  /// None when one of the two has gone. Decoration that is on the screen alone is no part of what
  /// is visible.
  std::optional<FramedWindow> fetch(Decoration decoration = Decoration::inFrames);

 private:
  Pending<xcb_get_geometry_reply, xcb_get_geometry_cookie_t> size_;
  Pending<xcb_translate_coordinates_reply, xcb_translate_coordinates_cookie_t> place_;
  Pending<xcb_query_tree_reply, xcb_query_tree_cookie_t> tree_;
  PropertyRequest decoration_;
  PropertyRequest shadow_;
};

}  // namespace vistrel::platform::linux_desktop
