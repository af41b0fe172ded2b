#include "platform/linux/wayland/stream/ShadowMargins.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

namespace vistrel::platform::linux_desktop {
namespace {

/// In pixels. GTK 3's shadows are up to 29 wide, those of weston's programs 32.
constexpr int widestShadow = 64;

/// How much of a side is to be drawn for it to be an edge, and how much for the sides next to it to
/// end where it does: corners are round, and a title bar is all there is of some windows.
constexpr double partOfAnEdge = 0.5;
constexpr double nearlyAll = 0.9;

bool isDrawn(PixelRows rows, int x, int y) {
  constexpr std::uint32_t color = 0x00ffffff;
  std::uint32_t pixel = 0;
  std::memcpy(&pixel, rows.base + std::ptrdiff_t{y} * rows.stride + std::ptrdiff_t{x} * 4,
              sizeof pixel);
  return (pixel & color) != 0;
}

int right(const PixelRect& rect) { return rect.x + rect.width; }
int bottom(const PixelRect& rect) { return rect.y + rect.height; }

PixelRect between(int left, int top, int right, int bottom) {
  return {left, top, right - left, bottom - top};
}

bool isRowDrawn(PixelRows rows, int y, int left, int right) {
  for (int x = left; x < right; ++x) {
    if (isDrawn(rows, x, y)) return true;
  }
  return false;
}

/// What is drawn of a picture, of which `known` is known to be; it reads what lies outside of that.
PixelRect drawnIn(PixelRows rows, PixelSize size, const PixelRect& known) {
  int top = 0;
  const int knownTop = isEmpty(known) ? size.height : known.y;
  while (top < knownTop && !isRowDrawn(rows, top, 0, size.width)) ++top;
  if (top == size.height) return {};
  int end = size.height;
  const int knownEnd = isEmpty(known) ? top + 1 : bottom(known);
  while (end > knownEnd && !isRowDrawn(rows, end - 1, 0, size.width)) --end;
  int left = isEmpty(known) ? size.width : known.x;
  int last = isEmpty(known) ? 0 : right(known);
  for (int y = top; y < end; ++y) {
    int x = 0;
    while (x < left && !isDrawn(rows, x, y)) ++x;
    left = std::min(left, x);
    x = size.width;
    while (x > last && !isDrawn(rows, x - 1, y)) --x;
    last = std::max(last, x);
  }
  return between(left, top, last, end);
}

double drawnPartOfRow(PixelRows rows, int y, const PixelRect& area) {
  int count = 0;
  for (int x = area.x; x < right(area); ++x) count += isDrawn(rows, x, y) ? 1 : 0;
  return static_cast<double>(count) / area.width;
}

double drawnPartOfColumn(PixelRows rows, int x, const PixelRect& area) {
  int count = 0;
  for (int y = area.y; y < bottom(area); ++y) count += isDrawn(rows, x, y) ? 1 : 0;
  return static_cast<double>(count) / area.height;
}

/// Whether margins are those of one shadow; 0 stands for a side without.
bool areOfOneShadow(const std::array<int, 4>& margins) {
  constexpr int fewestSides = 3;
  constexpr int evenness = 4;
  int count = 0;
  int narrowest = widestShadow;
  int widest = 0;
  for (const int each : margins) {
    if (each == 0) continue;
    ++count;
    narrowest = std::min(narrowest, each);
    widest = std::max(widest, each);
  }
  return count >= fewestSides && widest <= 2 * narrowest + evenness;
}

}  // namespace

PixelRect ShadowMargins::windowIn(PixelRows rows, PixelSize size) {
  if (size != size_) *this = {};
  size_ = size;
  const auto drawn = drawnIn(rows, size, drawn_);
  if (drawn != drawn_) straight_ = {};
  drawn_ = drawn;
  if (isEmpty(drawn_)) return rectOf(size);
  noticeStraightEdges(rows);
  const auto margin = [](bool isStraight, int width) {
    return isStraight && width <= widestShadow ? width : 0;
  };
  const std::array<int, 4> margins{margin(straight_.left, drawn_.x),
                                   margin(straight_.top, drawn_.y),
                                   margin(straight_.right, size.width - right(drawn_)),
                                   margin(straight_.bottom, size.height - bottom(drawn_))};
  if (!areOfOneShadow(margins)) return rectOf(size);
  return between(margins[0], margins[1], size.width - margins[2], size.height - margins[3]);
}

void ShadowMargins::noticeStraightEdges(PixelRows rows) {
  if (straight_ == Edges{true, true, true, true}) return;
  const double top = drawnPartOfRow(rows, drawn_.y, drawn_);
  const double last = drawnPartOfRow(rows, bottom(drawn_) - 1, drawn_);
  const double left = drawnPartOfColumn(rows, drawn_.x, drawn_);
  const double end = drawnPartOfColumn(rows, right(drawn_) - 1, drawn_);
  const bool isWideAsSeen = top >= nearlyAll || last >= nearlyAll;
  const bool isHighAsSeen = left >= nearlyAll || end >= nearlyAll;
  straight_.left |= left >= partOfAnEdge || isWideAsSeen;
  straight_.right |= end >= partOfAnEdge || isWideAsSeen;
  straight_.top |= top >= partOfAnEdge || isHighAsSeen;
  straight_.bottom |= last >= partOfAnEdge || isHighAsSeen;
}

}  // namespace vistrel::platform::linux_desktop
