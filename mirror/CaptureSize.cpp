#include "mirror/CaptureSize.h"

#include <algorithm>

namespace vistrel {

using platform::Size;
using platform::truncatedToInt64;

namespace {

constexpr std::int64_t minPixels = 2;
constexpr double growthThreshold = 1.15;
constexpr double maxGrowth = 2;

}  // namespace

CaptureSize initialCaptureSize(Size source, double backingScale) {
  return {std::max(truncatedToInt64(source.width * backingScale), minPixels),
          std::max(truncatedToInt64(source.height * backingScale), minPixels)};
}

std::optional<CaptureSize> grownCaptureSize(std::int64_t captureWidth, double panelWidth,
                                            Size source, double backingScale) {
  const std::int64_t wanted = truncatedToInt64(panelWidth * backingScale);
  const std::int64_t threshold =
      truncatedToInt64(static_cast<double>(captureWidth) * growthThreshold);
  if (threshold >= wanted) return std::nullopt;
  const std::int64_t cap = truncatedToInt64(maxGrowth * backingScale * source.width);
  const std::int64_t width = std::min(wanted, cap);
  if (width <= captureWidth) return std::nullopt;
  const double heightPerWidth = source.height / source.width;
  return CaptureSize{width, truncatedToInt64(heightPerWidth * static_cast<double>(width))};
}

}  // namespace vistrel
