#include "mirror/BlankTest.h"

namespace vistrel {

using platform::PixelBGRA;
using platform::PixelBuffer;

namespace {

constexpr int gridSide = 24;
/// The brightest that a channel of a near-black pixel is, of 255.
constexpr int darkest = 12;

bool isNearBlack(PixelBGRA pixel) {
  return pixel.blue <= darkest && pixel.green <= darkest && pixel.red <= darkest;
}

}  // namespace

bool isMostlyBlank(const PixelBuffer& frame) {
  if (frame.pixelFormat() != platform::pixelFormat32BGRA) return false;
  if (frame.width() < 2 || frame.height() < 2) return false;
  bool allDark = true;
  const bool readable = frame.visitSampleGrid(gridSide, gridSide, [&](PixelBGRA pixel) {
    allDark = isNearBlack(pixel);
    return allDark;
  });
  return readable && allDark;
}

}  // namespace vistrel
