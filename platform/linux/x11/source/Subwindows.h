#pragma once

#include <set>

#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// The windows inside a client's own, of which some toolkits make one for each control. Notices
/// when the client loses some, which is how such programs begin to take their window down.
class Subwindows {
 public:
  explicit Subwindows(Connection& connection) : connection_(connection) {}
  Subwindows(const Subwindows&) = delete;
  Subwindows& operator=(const Subwindows&) = delete;
  ~Subwindows();

  /// Listens to all that are inside `client` now and to those that come later, but for those that
  /// the connection listens to already. Whoever calls this listens to the client's own children
  /// (SubstructureNotify) and has done so before.
  void watch(xcb_window_t client);
  void handle(const xcb_generic_event_t& event);
  /// Whether it tells that one has been unmapped or destroyed.
  bool isLoss(const xcb_generic_event_t& event) const;
  /// Whether one has been unmapped or destroyed since this was last asked.
  bool takeLoss();

 private:
  void release();
  void add(xcb_window_t window);
  bool holds(xcb_window_t parent) const;

  Connection& connection_;
  xcb_window_t client_ = XCB_NONE;
  std::set<xcb_window_t> windows_;
  bool hasLost_ = false;
};

}  // namespace vistrel::platform::linux_desktop
