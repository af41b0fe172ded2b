#include "platform/simulated/SimulatedFrames.h"

#include <functional>
#include <utility>

namespace vistrel::platform::simulated {
namespace {

constexpr std::int64_t bytesPerPixel = 4;
/// Rows are longer than their pixels, as those of real buffers may be.
constexpr std::int64_t rowPadding = 12;
constexpr std::uint8_t paddingByte = 0xFF;

using ColorAt = std::function<PixelBGRA(std::int64_t x, std::int64_t y)>;

Pixels makePixels(std::int64_t width, std::int64_t height, PixelFormat format,
                  const ColorAt& colorAt) {
  const std::int64_t bytesPerRow = width * bytesPerPixel + rowPadding;
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(bytesPerRow * height), paddingByte);
  for (std::int64_t y = 0; y < height; ++y) {
    for (std::int64_t x = 0; x < width; ++x) {
      const PixelBGRA color = colorAt(x, y);
      std::uint8_t* pixel = bytes.data() + y * bytesPerRow + x * bytesPerPixel;
      pixel[0] = color.blue;
      pixel[1] = color.green;
      pixel[2] = color.red;
      pixel[3] = color.alpha;
    }
  }
  return std::make_shared<HostPixelBuffer>(format, width, height, bytesPerRow, std::move(bytes));
}

constexpr PixelBGRA black{0, 0, 0, 255};

}  // namespace

Pixels solidPixels(std::int64_t width, std::int64_t height, PixelBGRA color, PixelFormat format) {
  return makePixels(width, height, format, [color](auto, auto) { return color; });
}

Pixels blackPixels(std::int64_t width, std::int64_t height) {
  return solidPixels(width, height, black);
}

Pixels quadrantPixels(std::int64_t width, std::int64_t height,
                      const std::array<PixelBGRA, 4>& colors) {
  return makePixels(width, height, pixelFormat32BGRA, [&](std::int64_t x, std::int64_t y) {
    const std::size_t column = x < width / 2 ? 0 : 1;
    const std::size_t row = y < height / 2 ? 0 : 1;
    return colors[row * 2 + column];
  });
}

Pixels blackPixelsBut(std::int64_t width, std::int64_t height, std::int64_t x, std::int64_t y,
                      PixelBGRA color) {
  return makePixels(width, height, pixelFormat32BGRA, [=](std::int64_t column, std::int64_t row) {
    return column == x && row == y ? color : black;
  });
}

Pixels unreachablePixels(std::int64_t width, std::int64_t height) {
  return std::make_shared<HostPixelBuffer>(pixelFormat32BGRA, width, height, width * bytesPerPixel,
                                           std::vector<std::uint8_t>{});
}

}  // namespace vistrel::platform::simulated
