#include "platform/linux/x11/Corners.h"

#include <algorithm>
#include <cmath>

namespace vistrel::platform::linux_desktop {
namespace {

/// How far a row of pixels, `row` down from the top of a rounded rectangle, is indented.
int indent(int radius, int row) {
  const double fromCentre = radius - row - 0.5;
  const double halfChord = std::sqrt(radius * radius - fromCentre * fromCentre);
  return static_cast<int>(std::lround(radius - halfChord));
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

std::vector<PixelRect> roundedRows(PixelSize size, int radius) {
  const int rounded = std::clamp(radius, 0, std::min(size.width, size.height) / 2);
  std::vector<PixelRect> rows;
  const auto addRow = [&](int y, int indented) {
    rows.push_back({indented, y, size.width - 2 * indented, 1});
  };
  for (int row = 0; row < rounded; ++row) addRow(row, indent(rounded, row));
  rows.push_back({0, rounded, size.width, size.height - 2 * rounded});
  for (int row = rounded - 1; row >= 0; --row) addRow(size.height - 1 - row, indent(rounded, row));
  return rows;
}

}  // namespace vistrel::platform::linux_desktop
