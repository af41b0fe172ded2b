#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/linux/PixelRect.h"
#include "platform/linux/x11/parking/ParkingOwner.h"
#include "platform/linux/x11/parking/WindowStates.h"
#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// What a parked window gets back. It stands on the window itself, from before the first thing
/// about the window is changed until after the last has been put right, so that it outlives whoever
/// has parked the window. Where the hidden monitors are that windows are parked on, and how large
/// the screen was without them, is with these (HiddenMonitor.h, GrownScreen.h).
struct ParkingRecord {
  OwnerId owner;
  /// Where the client is without its ties, in pixels of the root window. None as long as they are
  /// being taken off: the window has not been moved yet, and has only these to get back.
  std::optional<PixelRect> client;
  Ties ties;
  /// None where the manager has no desktops.
  std::optional<std::uint32_t> desktop;
  bool isSticky = false;
  /// None for a window that was left in its layer.
  std::optional<StackingLayer> layer;

  friend bool operator==(const ParkingRecord&, const ParkingRecord&) = default;
};

/// As 32-bit values, and back; none from anything else, such as what another version has left.
std::vector<std::uint32_t> valuesOf(const ParkingRecord& record);
std::optional<ParkingRecord> recordFrom(const std::vector<std::uint32_t>& values);

/// None where the window has none, or is gone.
std::optional<ParkingRecord> readRecord(Connection& connection, xcb_window_t window);
/// With the display server by the time it returns.
void writeRecord(Connection& connection, xcb_window_t window, const ParkingRecord& record);
void removeRecord(Connection& connection, xcb_window_t window);

/// The windows that may have one, whoever has parked them, mapped or not.
std::vector<xcb_window_t> recordedWindows(Connection& connection);

}  // namespace vistrel::platform::linux_desktop
