#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/x11/server/Connection.h"
#include "platform/linux/x11/server/Resources.h"

namespace vistrel::platform::linux_desktop {

/// Tells when the window manager has come to rest after a change: when there has been no other for
/// a while, and it has dealt with all that happened until then. It is asked for another size of a
/// window that nobody sees, which every manager grants in its turn (ICCCM 4.1.5).
class ManagersRest {
 public:
  /// Calls `atRest` on `queue`, where this object and `connection` live.
  ManagersRest(SerialQueue& queue, Connection& connection, std::function<void()> atRest);

  /// The manager is at work, or about to be.
  void disturb();
  /// For each that the connection is told of.
  void handle(const xcb_configure_notify_event_t& event);

 private:
  void ask();

  SerialQueue& queue_;
  Connection& connection_;
  const std::function<void()> atRest_;
  const OwnWindow window_;
  /// How often it has been disturbed, from 0 again after `mostDisturbances`.
  const std::shared_ptr<std::uint32_t> disturbances_ = std::make_shared<std::uint32_t>(0);
};

}  // namespace vistrel::platform::linux_desktop
