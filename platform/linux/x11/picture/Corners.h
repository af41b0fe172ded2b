#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/linux/x11/server/PixelGeometry.h"

namespace vistrel::platform::linux_desktop {

/// A disc that touches all sides of a square of 2 × `radius` pixels; its quarters are the corners
/// of a rounded rectangle. One byte a pixel: 255 inside, 0 outside, the covered share between.
/// Rows are `stride` bytes long.
std::vector<std::uint8_t> discCoverage(int radius, std::size_t stride);

/// Which of the pixels that its outline crosses are a rounded rectangle's.
enum class CrossedPixels { mostlyInside, all };

/// A rounded rectangle at the origin as whole pixels: rectangles from the top down. The radius is
/// at most half of either side.
std::vector<PixelRect> roundedRows(PixelSize size, int radius, CrossedPixels crossed);

}  // namespace vistrel::platform::linux_desktop
