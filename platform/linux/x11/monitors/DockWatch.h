#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <vector>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/x11/monitors/Struts.h"
#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// Knows what docks and their like keep free, and follows it by events. On a connection of its own,
/// so that nobody has to wait who asks.
class DockWatch {
 public:
  /// Works on `queue` for as long as that runs, and calls `changed` there whenever the reservations
  /// have become others; null when the display refuses. Any thread; returns with the reservations
  /// of now.
  static std::shared_ptr<DockWatch> on(const std::shared_ptr<SerialQueue>& queue,
                                       std::function<void()> changed);

  /// Any thread.
  Reservations reservations() const;

 private:
  DockWatch(std::unique_ptr<Connection> connection, std::function<void()> changed);

  /// Handles what has arrived.
  void serve();
  void handle(const xcb_generic_event_t& event);
  bool isAboutRoom(const xcb_property_notify_event_t& event);
  void refresh();
  /// Reads everything, and listens to what it comes from.
  Reservations read();
  void listenToClients(const std::set<xcb_window_t>& clients);
  std::vector<Dock> readDocks(const std::set<xcb_window_t>& clients);
  /// None when `window` cannot be seen.
  std::optional<PixelRect> followPlace(xcb_window_t window);
  std::optional<PixelRect> readWorkArea();

  std::unique_ptr<Connection> connection_;
  const std::function<void()> changed_;
  std::set<xcb_window_t> clients_;  // those that are listened to
  bool isStale_ = false;
  mutable std::mutex mutex_;
  Reservations reservations_;  // guarded by mutex_
};

}  // namespace vistrel::platform::linux_desktop
