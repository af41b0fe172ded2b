#include "platform/linux/wayland/stream/FrameLayout.h"

namespace vistrel::platform::linux_desktop {
namespace {

constexpr int bytesPerPixel = 4;

/// As X's requests carry the width of an image in memory.
constexpr std::int64_t longestRow = std::int64_t{0xffff} * bytesPerPixel;

bool isRow(std::int64_t stride, int width) {
  return stride >= std::int64_t{width} * bytesPerPixel && stride <= longestRow &&
         stride % bytesPerPixel == 0;
}

/// Whatever the numbers are: none of them is added to another.
bool isWithin(const PixelRect& part, PixelSize whole) {
  return !isEmpty(part) && part.x >= 0 && part.y >= 0 && part.width <= whole.width &&
         part.height <= whole.height && part.x <= whole.width - part.width &&
         part.y <= whole.height - part.height;
}

}  // namespace

bool isStreamable(PixelSize size) {
  return !isEmpty(size) && size.width <= longestStreamedSide && size.height <= longestStreamedSide;
}

std::optional<FrameLayout> layoutOf(const ClaimedFrame& claimed) {
  if (!isStreamable(claimed.size) || !isRow(claimed.stride, claimed.size.width)) {
    return std::nullopt;
  }
  const auto needed = static_cast<std::uint64_t>(claimed.stride * claimed.size.height);
  if (needed > claimed.bytes || needed > claimed.readable ||
      claimed.offset > claimed.readable - needed || claimed.offset % bytesPerPixel != 0) {
    return std::nullopt;
  }
  const auto crop = claimed.crop.value_or(rectOf(claimed.size));
  if (!isWithin(crop, claimed.size)) return std::nullopt;
  return FrameLayout{claimed.offset, static_cast<int>(claimed.stride), claimed.size, crop};
}

}  // namespace vistrel::platform::linux_desktop
