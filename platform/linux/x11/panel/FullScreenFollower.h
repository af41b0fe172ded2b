#pragma once

#include <cstdint>

#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// Follows whether the window that it is told to follow is full-screen (EWMH,
/// `_NET_WM_STATE_FULLSCREEN`).
class FullScreenFollower {
 public:
  /// `connection` outlives this object, and listens to no events of the windows that it follows.
  explicit FullScreenFollower(Connection& connection) : connection_(connection) {}

  /// From now on this one, or none (XCB_WINDOW_NONE).
  void follow(xcb_window_t window);
  /// For each change of a property that the connection is told of.
  void changedProperty(const xcb_property_notify_event_t& event);

  xcb_window_t followed() const { return followed_; }
  /// The one that it follows while that is full-screen, else none.
  xcb_window_t fullScreen() const { return isFullScreen_ ? followed_ : xcb_window_t{}; }

 private:
  void listen(std::uint32_t mask);
  void look();

  Connection& connection_;
  xcb_window_t followed_ = XCB_WINDOW_NONE;
  bool isFullScreen_ = false;
};

}  // namespace vistrel::platform::linux_desktop
