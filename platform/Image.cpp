#include "platform/Image.h"

#include <utility>

namespace vistrel::platform {

void visitSampleGridInMemory(const HostPixels& pixels, int rows, int columns,
                             const std::function<bool(PixelBGRA)>& visit) {
  for (int i = 0; i < rows; ++i) {
    const std::int64_t y = multipliedExactly(i, pixels.height - 1) / (rows - 1);
    for (int j = 0; j < columns; ++j) {
      const std::int64_t x = multipliedExactly(j, pixels.width - 1) / (columns - 1);
      const std::uint8_t* pixel = pixels.base + y * pixels.bytesPerRow + x * 4;
      if (!visit({pixel[0], pixel[1], pixel[2], pixel[3]})) return;
    }
  }
}

HostPixelBuffer::HostPixelBuffer(PixelFormat format, std::int64_t width, std::int64_t height,
                                 std::int64_t bytesPerRow, std::vector<std::uint8_t> bytes)
    : format_(format),
      width_(width),
      height_(height),
      bytesPerRow_(bytesPerRow),
      bytes_(std::move(bytes)) {}

bool HostPixelBuffer::visitSampleGrid(int rows, int columns,
                                      const std::function<bool(PixelBGRA)>& visit) const {
  if (bytes_.empty()) return false;
  visitSampleGridInMemory({bytes_.data(), width_, height_, bytesPerRow_}, rows, columns, visit);
  return true;
}

}  // namespace vistrel::platform
