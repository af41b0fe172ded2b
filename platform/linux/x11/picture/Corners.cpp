#include "platform/linux/x11/picture/Corners.h"

#include <algorithm>
#include <cmath>

namespace vistrel::platform::linux_desktop {
namespace {

/// How far a row of pixels, `row` down from the top of a rounded rectangle, is indented. Those
/// whose middle is nearer to the corner's than `reach` belong to it.
int indent(int radius, int row, double reach) {
  const double fromCentre = radius - row - 0.5;
  const double halfChord = std::sqrt(reach * reach - fromCentre * fromCentre);
  return std::max(0, static_cast<int>(std::ceil(radius - 0.5 - halfChord)));
}

}  // namespace

std::vector<std::uint8_t> discCoverage(int radius, std::size_t stride) {
  const int side = 2 * radius;
  std::vector<std::uint8_t> pixels(stride * static_cast<std::size_t>(side));
  for (int y = 0; y < side; ++y) {
    for (int x = 0; x < side; ++x) {
      const double distance = std::hypot(x + 0.5 - radius, y + 0.5 - radius);
      const double covered = std::clamp(radius - distance + 0.5, 0.0, 1.0);
      pixels[static_cast<std::size_t>(y) * stride + static_cast<std::size_t>(x)] =
          static_cast<std::uint8_t>(std::lround(covered * 255));
    }
  }
  return pixels;
}

std::vector<PixelRect> roundedRows(PixelSize size, int radius, CrossedPixels crossed) {
  // `discCoverage` counts a pixel as crossed up to half a pixel from the outline.
  const double reach = crossed == CrossedPixels::all ? radius + 0.5 : radius;
  std::vector<PixelRect> rows;
  const auto addRow = [&](int y, int indented) {
    rows.push_back({indented, y, size.width - 2 * indented, 1});
  };
  for (int row = 0; row < radius; ++row) addRow(row, indent(radius, row, reach));
  rows.push_back({0, radius, size.width, size.height - 2 * radius});
  for (int row = radius - 1; row >= 0; --row)
    addRow(size.height - 1 - row, indent(radius, row, reach));
  return rows;
}

}  // namespace vistrel::platform::linux_desktop
