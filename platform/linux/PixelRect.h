#pragma once

namespace vistrel::platform::linux_desktop {

/// Pixels, y downwards. Where the origin lies is said where one is declared.
struct PixelRect {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;

  friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

}  // namespace vistrel::platform::linux_desktop
