#include "platform/linux/x11/manager/RequestedOrigin.h"

#include <xcb/xproto.h>

namespace vistrel::platform::linux_desktop {
namespace {

/// How much of the frame's two widths along one axis lies before the reference point: none, half or
/// all of it.
int inHalves(std::uint32_t gravity, bool horizontal) {
  // Gravities count rows of three, from NorthWest.
  const auto place = static_cast<int>(gravity) - XCB_GRAVITY_NORTH_WEST;
  return horizontal ? place % 3 : place / 3;
}

}  // namespace

std::uint32_t gravityFrom(const std::vector<std::uint32_t>& normalHints) {
  constexpr std::uint32_t hasGravity = 1 << 9;  // ICCCM 4.1.2.3, PWinGravity
  constexpr std::size_t gravityIndex = 17;
  if (normalHints.size() <= gravityIndex || (normalHints.front() & hasGravity) == 0) {
    return XCB_GRAVITY_NORTH_WEST;
  }
  const auto gravity = normalHints[gravityIndex];
  const bool isGravity = gravity >= XCB_GRAVITY_NORTH_WEST && gravity <= XCB_GRAVITY_STATIC;
  return isGravity ? gravity : std::uint32_t{XCB_GRAVITY_NORTH_WEST};
}

RequestedOrigin requestedOrigin(const PixelRect& client, const Extents& frame,
                                std::uint32_t gravity) {
  if (gravity == XCB_GRAVITY_STATIC) return {client.x, client.y};
  return {client.x - frame.left + (frame.left + frame.right) * inHalves(gravity, true) / 2,
          client.y - frame.top + (frame.top + frame.bottom) * inHalves(gravity, false) / 2};
}

}  // namespace vistrel::platform::linux_desktop
