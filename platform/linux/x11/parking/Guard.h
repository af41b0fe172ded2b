#pragma once

#include "platform/linux/x11/parking/ParkingOwner.h"

namespace vistrel::platform::linux_desktop {

/// Starts the guard of parked windows (guard/GuardProgram.cpp), which sends them home when their
/// owner ends: in a session and process group of its own, so that what ends the program does not
/// end it. Without its executable nothing happens: the next start does its work. Returns once it
/// runs.
void startGuard(const OwnerId& owner);

}  // namespace vistrel::platform::linux_desktop
