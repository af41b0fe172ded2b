#include "platform/Geometry.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace vistrel::platform {

Rect intersection(const Rect& a, const Rect& b) {
  const double x = std::max(a.minX(), b.minX());
  const double y = std::max(a.minY(), b.minY());
  const double width = std::min(a.maxX(), b.maxX()) - x;
  const double height = std::min(a.maxY(), b.maxY()) - y;
  return rect(x, y, std::max(width, 0.0), std::max(height, 0.0));
}

std::int64_t truncatedToInt64(double value) {
  // 2^63 is exact as a double while INT64_MAX is not; written so that NaN fails both comparisons.
  constexpr double limit = 9223372036854775808.0;
  if (!(value >= -limit && value < limit)) std::abort();
  return static_cast<std::int64_t>(value);
}

std::int32_t fittingInt32(std::int64_t value) {
  if (!std::in_range<std::int32_t>(value)) std::abort();
  return static_cast<std::int32_t>(value);
}

std::int64_t multipliedExactly(std::int64_t a, std::int64_t b) {
  std::int64_t product = 0;
  if (__builtin_mul_overflow(a, b, &product)) std::abort();
  return product;
}

}  // namespace vistrel::platform
