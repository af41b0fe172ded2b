#include "platform/linux/x11/picture/MipLevels.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vistrel::platform::linux_desktop {
namespace {

/// Pixels of a copy that is made of pixels `from` up to `to` and beyond, each standing for so many.
std::pair<int, int> changedAlong(int from, int to, double perPixel) {
  // A transform's numbers have 16 bits after the point, and add up along a row.
  constexpr double rounding = 1.0 / 32;
  const double slack = perPixel == std::floor(perPixel) ? 0 : rounding;
  const double first = (from - 0.5 - slack) / perPixel - 0.5;
  const double end = (to + 0.5 + slack) / perPixel - 0.5;
  return {static_cast<int>(std::floor(first)) + 1, static_cast<int>(std::ceil(end))};
}

/// At 0 up to `begin`, at 1 from `end` on, and between them in between.
double ramp(double value, double begin, double end) {
  return std::clamp((value - begin) / (end - begin), 0.0, 1.0);
}

/// Whether one side is reduced much more than the other, as where a picture of an extreme shape
/// cannot be narrower than a pixel.
bool isDistorted(PixelSize source, PixelSize target) {
  constexpr double most = 1.5;
  const double x = static_cast<double>(source.width) / target.width;
  const double y = static_cast<double>(source.height) / target.height;
  return std::max(x, y) > most * std::min(x, y);
}

/// Twice the target's size, as far as a pixmap can be as large.
MipLevel doubleLevel(PixelSize source, PixelSize target) {
  constexpr int largest = 0x7fff;
  const PixelSize size{std::min(2 * target.width, largest), std::min(2 * target.height, largest)};
  return {size, static_cast<double>(source.width) / size.width,
          static_cast<double>(source.height) / size.height};
}

/// Whether one of the area's sides is what the other one and the source's shape make it. Panels
/// round their own size and their title bar's to pixels.
bool hasShapeOf(PixelSize source, const PixelRect& area) {
  constexpr double rounding = 1.5;
  const double aspect = static_cast<double>(source.width) / source.height;
  return std::abs(area.height - area.width / aspect) <= rounding ||
         std::abs(area.width - area.height * aspect) <= rounding;
}

}  // namespace

double reduction(PixelSize source, PixelSize target) {
  return std::min(static_cast<double>(source.width) / target.width,
                  static_cast<double>(source.height) / target.height);
}

std::vector<MipLevel> levelsFor(PixelSize source, PixelSize target) {
  constexpr double nearlyWhole = 1.25;
  constexpr double besideAHalf = 1.5;
  // A half whose size was rounded is a half.
  constexpr double rounding = 1.01;
  const double exact = reduction(source, target);
  if (exact <= nearlyWhole) return {halfLevel(source, 0)};
  const int halvings = static_cast<int>(std::floor(std::log2(exact * rounding)));
  const auto nearest = halfLevel(source, halvings);
  const bool isFarFromAHalf = exact / nearest.perPixelX > besideAHalf;
  std::vector<MipLevel> levels;
  for (int i = 1; i < halvings; ++i) levels.push_back(halfLevel(source, i));
  const bool isHalf = nearest.size == target || (halvings > 0 && isFarFromAHalf);
  if (isHalf || isDistorted(source, target)) {
    levels.push_back(nearest);
    return levels;
  }
  const auto twice = doubleLevel(source, target);
  // Enlarging looks beyond the edges of the source, where other pixels may lie than in a copy.
  if (twice.perPixelX < 1 || twice.perPixelY < 1) levels.push_back(halfLevel(source, 0));
  levels.push_back(twice);
  return levels;
}

MipLevel halfLevel(PixelSize source, int halvings) {
  const double perPixel = std::exp2(halvings);
  return {{std::max(1, source.width >> halvings), std::max(1, source.height >> halvings)},
          perPixel,
          perPixel};
}

double sampleSpread(double reduction, bool isWhole) {
  constexpr double most = 0.2;
  constexpr double gradual = 0.2;
  // What is halved first is soft already, and sharpest beside a copy of twice the size.
  const double begin = isWhole ? 1.05 : 1.5;
  // As good as a half, which one sample takes whole.
  constexpr double nearlyHalf = 1.98;
  return reduction > nearlyHalf ? 0 : most * ramp(reduction, begin, begin + gradual);
}

int finestWholeLevel(PixelSize source, PixelSize target) {
  return std::max(0, static_cast<int>(std::ceil(std::log2(reduction(source, target)))) - 1);
}

PixelRect changedInCopy(const PixelRect& changed, double perPixelX, double perPixelY,
                        PixelSize copy) {
  const auto [left, right] = changedAlong(changed.x, changed.x + changed.width, perPixelX);
  const auto [top, bottom] = changedAlong(changed.y, changed.y + changed.height, perPixelY);
  return intersection({left, top, right - left, bottom - top}, rectOf(copy));
}

PixelRect changedInTarget(const PixelRect& changed, PixelSize source, PixelSize target,
                          double reach) {
  const double scaleX = static_cast<double>(target.width) / source.width;
  const double scaleY = static_cast<double>(target.height) / source.height;
  const int left = static_cast<int>(std::floor((changed.x - reach) * scaleX));
  const int top = static_cast<int>(std::floor((changed.y - reach) * scaleY));
  const int right = static_cast<int>(std::ceil((changed.x + changed.width + reach) * scaleX));
  const int bottom = static_cast<int>(std::ceil((changed.y + changed.height + reach) * scaleY));
  return intersection({left, top, right - left, bottom - top}, rectOf(target));
}

PixelRect aspectFit(PixelSize source, const PixelRect& area) {
  if (isEmpty(source) || isEmpty(area)) return {area.x, area.y, 0, 0};
  if (hasShapeOf(source, area)) return area;
  const double scale = std::min(static_cast<double>(area.width) / source.width,
                                static_cast<double>(area.height) / source.height);
  const int width = std::clamp(static_cast<int>(std::lround(source.width * scale)), 1, area.width);
  const int height =
      std::clamp(static_cast<int>(std::lround(source.height * scale)), 1, area.height);
  return {area.x + (area.width - width) / 2, area.y + (area.height - height) / 2, width, height};
}

}  // namespace vistrel::platform::linux_desktop
