#include "platform/linux/x11/picture/MipLevels.h"

#include <algorithm>
#include <cmath>

namespace vistrel::platform::linux_desktop {
namespace {

double reduction(PixelSize source, PixelSize target) {
  return std::min(static_cast<double>(source.width) / target.width,
                  static_cast<double>(source.height) / target.height);
}

int coarsestLevel(PixelSize source) {
  int level = 0;
  while (std::min(source.width, source.height) >> (level + 1) > 0) ++level;
  return level;
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

LevelBlend levelsFor(PixelSize source, PixelSize target) {
  constexpr double closeToLevel = 0.15;
  const double exact =
      std::clamp<double>(std::log2(reduction(source, target)), 0, coarsestLevel(source));
  const int finer = static_cast<int>(std::floor(exact));
  const double weight = (exact - finer - closeToLevel) / (1 - 2 * closeToLevel);
  if (weight >= 1) return {finer + 1, 0};
  return {finer, std::max(weight, 0.0)};
}

int finestWholeLevel(PixelSize source, PixelSize target) {
  return std::max(0, static_cast<int>(std::ceil(std::log2(reduction(source, target)))) - 1);
}

PixelSize sizeOfLevel(PixelSize source, int level) {
  return {std::max(1, source.width >> level), std::max(1, source.height >> level)};
}

PixelRect changedInNextLevel(const PixelRect& changed, PixelSize nextLevel) {
  const int right = (changed.x + changed.width + 1) / 2;
  const int bottom = (changed.y + changed.height + 1) / 2;
  const int left = changed.x / 2;
  const int top = changed.y / 2;
  return intersection({left, top, right - left, bottom - top}, rectOf(nextLevel));
}

PixelRect changedInTarget(const PixelRect& changed, PixelSize source, PixelSize target,
                          int coarsest) {
  // Bilinear filters reach one pixel of the coarsest level beyond what has changed; a level's own
  // rounding adds another.
  const double reach = 2.0 * (1 << coarsest);
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
