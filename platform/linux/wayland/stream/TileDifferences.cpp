#include "platform/linux/wayland/stream/TileDifferences.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace vistrel::platform::linux_desktop {
namespace {

constexpr int bytesPerPixel = 4;

bool differ(PixelRows former, PixelRows newer, int x, int y, int width) {
  const auto placeIn = [&](PixelRows rows) {
    return rows.base + std::ptrdiff_t{y} * rows.stride + std::ptrdiff_t{x} * bytesPerPixel;
  };
  const auto bytes = static_cast<std::size_t>(width) * bytesPerPixel;
  return std::memcmp(placeIn(former), placeIn(newer), bytes) != 0;
}

/// Which columns of tiles differ in the rows from `top` to before `bottom`. Memory is read row by
/// row, but once where nothing has changed, and no further than to where all of them differ.
std::vector<bool> differingColumns(PixelRows former, PixelRows newer, int width, int top,
                                   int bottom) {
  std::vector<bool> columns(static_cast<std::size_t>((width + tileSide - 1) / tileSide));
  const auto isUndecided = [&] {
    return std::find(columns.begin(), columns.end(), false) != columns.end();
  };
  for (int y = top; y < bottom && isUndecided(); ++y) {
    if (!differ(former, newer, 0, y, width)) continue;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const int x = static_cast<int>(i) * tileSide;
      columns[i] = columns[i] || differ(former, newer, x, y, std::min(tileSide, width - x));
    }
  }
  return columns;
}

/// Adds what lies below a rectangle of the same columns to that.
void addBelow(std::vector<PixelRect>& rects, const PixelRect& rect) {
  const auto above = std::find_if(rects.begin(), rects.end(), [&](const PixelRect& each) {
    return each.x == rect.x && each.width == rect.width && each.y + each.height == rect.y;
  });
  if (above == rects.end()) {
    rects.push_back(rect);
  } else {
    above->height += rect.height;
  }
}

}  // namespace

std::vector<PixelRect> differingTiles(PixelRows former, PixelRows newer, PixelSize size) {
  std::vector<PixelRect> result;
  for (int top = 0; top < size.height; top += tileSide) {
    const int bottom = std::min(top + tileSide, size.height);
    const auto columns = differingColumns(former, newer, size.width, top, bottom);
    for (auto first = columns.begin(); first != columns.end();) {
      first = std::find(first, columns.end(), true);
      const auto last = std::find(first, columns.end(), false);
      if (first == last) break;
      const int x = static_cast<int>(first - columns.begin()) * tileSide;
      const int right = std::min(static_cast<int>(last - columns.begin()) * tileSide, size.width);
      addBelow(result, {x, top, right - x, bottom - top});
      first = last;
    }
  }
  return result;
}

}  // namespace vistrel::platform::linux_desktop
