#pragma once

#include <cstdint>

#include "platform/linux/x11/server/Connection.h"
#include "platform/linux/x11/server/Resources.h"

namespace vistrel::platform::linux_desktop {

/// Whose windows are parked: a window of that process, with its token on it.
struct OwnerId {
  xcb_window_t window = XCB_WINDOW_NONE;
  std::uint32_t token = 0;

  friend bool operator==(const OwnerId&, const OwnerId&) = default;
};

/// By which others can tell that the parked windows are still somebody's: lives as long as this
/// object, and no longer than the process or its connection.
class ParkingOwner {
 public:
  explicit ParkingOwner(Connection& connection);

  OwnerId id() const;

 private:
  OwnWindow window_;
};

bool isAlive(Connection& connection, const OwnerId& owner);

}  // namespace vistrel::platform::linux_desktop
