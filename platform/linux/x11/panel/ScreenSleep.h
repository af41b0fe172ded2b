#pragma once

#include <cstdint>

#include "platform/linux/CurrentThread.h"
#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// Whether the display sleeps: its screen saver hides every window, or its monitors are switched
/// off. Told by an event; nothing is asked for meanwhile. Lives on a queue with a connection.
class ScreenSleep {
 public:
  explicit ScreenSleep(Connection& connection);

  /// False where the server does not tell of its screen saver.
  bool isAsleep() const { return isAsleep_; }
  void handle(const xcb_generic_event_t& event);

 private:
  bool hidesScreen(std::uint8_t state, std::uint8_t kind);

  const OwnThread thread_;
  Connection& connection_;
  bool isAsleep_ = false;
};

}  // namespace vistrel::platform::linux_desktop
