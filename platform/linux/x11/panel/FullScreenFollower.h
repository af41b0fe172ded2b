#pragma once

#include <memory>
#include <set>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// Keeps panels above the active window while that is full-screen. A manager may put such a window
/// above those that are merely kept above others (EWMH, "Stacking order"; openbox 3.6.1), yet below
/// its own transients (ICCCM `WM_TRANSIENT_FOR`): so that is what panels are for as long as it
/// lasts.
class FullScreenFollower {
 public:
  /// Works on `queue` for as long as that runs; null when the display refuses. Any thread.
  static std::shared_ptr<FullScreenFollower> on(const std::shared_ptr<SerialQueue>& queue);

  /// Until `panel` is destroyed. On the queue.
  void add(xcb_window_t panel);

 private:
  explicit FullScreenFollower(std::unique_ptr<Connection> connection);

  /// Handles what has arrived.
  void serve();
  void handle(const xcb_generic_event_t& event);
  void changedProperty(const xcb_property_notify_event_t& event);
  void followActiveWindow();
  void watchActive(std::uint32_t mask);
  void followState();
  void attach(xcb_window_t panel);
  void restoreMinimised();

  std::unique_ptr<Connection> connection_;
  std::set<xcb_window_t> panels_;
  xcb_window_t active_ = XCB_WINDOW_NONE;
  /// The active window while it is full-screen.
  xcb_window_t fullScreen_ = XCB_WINDOW_NONE;
};

}  // namespace vistrel::platform::linux_desktop
