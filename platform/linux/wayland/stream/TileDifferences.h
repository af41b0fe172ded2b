#pragma once

#include <cstdint>
#include <vector>

#include "platform/linux/x11/server/PixelGeometry.h"

namespace vistrel::platform::linux_desktop {

/// Two pictures of one size are compared in tiles of this side, in pixels.
inline constexpr int tileSide = 64;

/// Pixels of 32 bits in memory, top row first.
struct PixelRows {
  const std::uint8_t* base;
  int stride;  // bytes from row to row
};

/// Which tiles of two pictures of that size differ, cut to the picture; neighbours in one rectangle
/// where together they are one.
std::vector<PixelRect> differingTiles(PixelRows former, PixelRows newer, PixelSize size);

}  // namespace vistrel::platform::linux_desktop
