#pragma once

#include <cstdint>
#include <filesystem>
#include <ostream>
#include <vector>

#include "tests/support/Rect.h"

namespace vistrel::testbed {

/// An opaque colour of a screen's pixel, sRGB.
struct Rgb {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;

  friend bool operator==(const Rgb&, const Rgb&) = default;
  /// As GoogleTest prints it.
  friend std::ostream& operator<<(std::ostream& stream, const Rgb& colour);
};

/// Whether no channel differs by more than `tolerance`.
bool similar(Rgb a, Rgb b, int tolerance);

/// A picture in memory, top row first.
class Picture {
 public:
  Picture() = default;
  Picture(int width, int height)
      : width_(width), height_(height), pixels_(static_cast<std::size_t>(width * height)) {}

  int width() const { return width_; }
  int height() const { return height_; }
  Rgb& at(int x, int y) { return pixels_.at(static_cast<std::size_t>(y * width_ + x)); }
  const Rgb& at(int x, int y) const { return pixels_.at(static_cast<std::size_t>(y * width_ + x)); }
  const Rgb& at(Point point) const { return at(point.x, point.y); }

  /// Saves it as PNG, making the folder if need be. Throws std::runtime_error.
  void savePng(const std::filesystem::path& file) const;

  friend bool operator==(const Picture&, const Picture&) = default;

 private:
  int width_ = 0;
  int height_ = 0;
  std::vector<Rgb> pixels_;
};

}  // namespace vistrel::testbed
