#pragma once

#include <cstdint>
#include <vector>

#include "platform/linux/PixelRect.h"
#include "platform/linux/x11/manager/VisibleFrame.h"

namespace vistrel::platform::linux_desktop {

/// A window's win_gravity (ICCCM 4.1.2.3) from its WM_NORMAL_HINTS, as a value of the protocol's
/// gravities: NorthWest when it names none.
std::uint32_t gravityFrom(const std::vector<std::uint32_t>& normalHints);

struct RequestedOrigin {
  int x = 0;
  int y = 0;

  friend bool operator==(const RequestedOrigin&, const RequestedOrigin&) = default;
};

/// The x and y to ask a manager for that is to put a client at `client`, inside a frame of its own
/// with widths `frame`: they mean the frame's reference point that the client's gravity names
/// (ICCCM 4.1.2.3, "win_gravity"). To be sent with the client's own gravity: openbox 3.6.1 goes on
/// to count from whatever gravity it was asked by last, and moves the window by the width of its
/// frame the next time that something else about it changes.
RequestedOrigin requestedOrigin(const PixelRect& client, const Extents& frame,
                                std::uint32_t gravity);

}  // namespace vistrel::platform::linux_desktop
