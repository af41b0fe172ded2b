#pragma once

#include <cstdint>

namespace vistrel::platform {

// Geometry in double-precision points. Which coordinate space a value lives in is said where it is
// declared; unless it says otherwise, windows and screens use screen space: origin at the
// bottom-left of the primary screen, y growing upwards.

struct Point {
  double x = 0;
  double y = 0;

  friend bool operator==(const Point&, const Point&) = default;
};

struct Size {
  double width = 0;
  double height = 0;

  friend bool operator==(const Size&, const Size&) = default;
};

struct Rect {
  Point origin;
  Size size;

  constexpr double minX() const { return origin.x; }
  constexpr double minY() const { return origin.y; }
  constexpr double maxX() const { return origin.x + size.width; }
  constexpr double maxY() const { return origin.y + size.height; }
  constexpr double midX() const { return origin.x + size.width / 2; }
  constexpr double midY() const { return origin.y + size.height / 2; }
  constexpr double width() const { return size.width; }
  constexpr double height() const { return size.height; }

  /// Half-open: the minimum edges belong to the rectangle, the maximum edges do not.
  constexpr bool contains(Point p) const {
    return p.x >= minX() && p.x < maxX() && p.y >= minY() && p.y < maxY();
  }

  friend bool operator==(const Rect&, const Rect&) = default;
};

constexpr Rect rect(double x, double y, double width, double height) {
  return Rect{{x, y}, {width, height}};
}

/// The part that two rectangles share; of zero size when they do not overlap.
Rect intersection(const Rect& a, const Rect& b);

/// The one conversion from real to integer: truncates toward zero. Ends the program abnormally,
/// writing nothing, when `value` is not finite or does not fit.
std::int64_t truncatedToInt64(double value);

/// The same value; ends the program abnormally, writing nothing, when it does not fit.
std::int32_t fittingInt32(std::int64_t value);

/// a × b; ends the program abnormally, writing nothing, when the product does not fit.
std::int64_t multipliedExactly(std::int64_t a, std::int64_t b);

}  // namespace vistrel::platform
