#pragma once

#include <ostream>

namespace vistrel::testbed {

/// Pixels, y downwards.
struct Point {
  int x = 0;
  int y = 0;

  friend bool operator==(const Point&, const Point&) = default;
};

/// Pixels, origin at the top-left, y downwards.
struct Rect {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;

  Point centre() const { return {x + width / 2, y + height / 2}; }
  /// The point that lies `fractionX` of the width and `fractionY` of the height in.
  Point at(double fractionX, double fractionY) const {
    return {x + static_cast<int>(fractionX * width), y + static_cast<int>(fractionY * height)};
  }

  friend bool operator==(const Rect&, const Rect&) = default;
  /// As GoogleTest prints it.
  friend std::ostream& operator<<(std::ostream& stream, const Rect& rect) {
    return stream << rect.width << " x " << rect.height << " at " << rect.x << ", " << rect.y;
  }
};

}  // namespace vistrel::testbed
