#pragma once

#include "platform/linux/x11/parking/ParkingRecord.h"
#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

// How parked windows come home: by their records alone, so that whoever finds one can do it. Each
// step may be taken twice. Deadlines are in seconds of the monotonic clock, and may be infinity.

/// Gives the window back what its record says, through the manager or, where none runs, directly,
/// and takes the record off. False where the manager has not answered by the deadline: whatever it
/// has been asked for, the record stays. True for a window that has gone.
bool bringHome(Connection& connection, xcb_window_t window, const ParkingRecord& record,
               double deadline);

/// Does so for every window whose owner has ended, and for no other. Those that somebody else has
/// in hand are left to them. Whether there is none left.
bool bringAbandonedHome(Connection& connection, double deadline);

}  // namespace vistrel::platform::linux_desktop
