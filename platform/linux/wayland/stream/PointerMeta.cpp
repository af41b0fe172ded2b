#include "platform/linux/wayland/stream/PointerMeta.h"

#include <atomic>
#include <cstring>
#include <spa/buffer/meta.h>
#include <spa/param/video/raw.h>

namespace vistrel::platform::linux_desktop {
namespace {

constexpr int bytesPerPixel = 4;

/// A copy that stays what it is when the memory is written to.
template <class T>
std::optional<T> copyOf(std::span<const std::uint8_t> memory, std::size_t offset) {
  if (offset > memory.size() || memory.size() - offset < sizeof(T)) return std::nullopt;
  T copy;
  std::memcpy(&copy, memory.data() + offset, sizeof(T));
  std::atomic_signal_fence(std::memory_order_seq_cst);
  return copy;
}

bool isTranslated(std::uint32_t format) {
  return format == SPA_VIDEO_FORMAT_RGBA || format == SPA_VIDEO_FORMAT_BGRA;
}

std::uint32_t pixelOf(const std::uint8_t* bytes, std::uint32_t format) {
  const bool isRedFirst = format == SPA_VIDEO_FORMAT_RGBA;
  const std::uint32_t red = bytes[isRedFirst ? 0 : 2];
  const std::uint32_t blue = bytes[isRedFirst ? 2 : 0];
  return std::uint32_t{bytes[3]} << 24 | red << 16 | std::uint32_t{bytes[1]} << 8 | blue;
}

std::optional<std::vector<std::uint32_t>> pixelsOf(std::span<const std::uint8_t> memory,
                                                   const spa_meta_bitmap& bitmap) {
  constexpr std::uint32_t longest = longestPointerSide;
  const auto [width, height] = bitmap.size;
  const auto stride = static_cast<std::size_t>(bitmap.stride);
  if (!isTranslated(bitmap.format) || width > longest || height > longest || bitmap.stride <= 0 ||
      stride < std::size_t{width} * bytesPerPixel || stride > memory.size() ||
      bitmap.offset > memory.size() || memory.size() - bitmap.offset < stride * height) {
    return std::nullopt;
  }
  std::vector<std::uint32_t> pixels;
  pixels.reserve(std::size_t{width} * height);
  for (std::uint32_t y = 0; y < height; ++y) {
    const auto* const row = memory.data() + bitmap.offset + y * stride;
    for (std::uint32_t x = 0; x < width; ++x) {
      pixels.push_back(pixelOf(row + std::size_t{x} * bytesPerPixel, bitmap.format));
    }
  }
  return pixels;
}

/// `memory` begins with the bitmap's head.
std::optional<PointerImage> imageOf(std::span<const std::uint8_t> memory, spa_point hotSpot) {
  const auto bitmap = copyOf<spa_meta_bitmap>(memory, 0);
  if (!bitmap || bitmap->format == SPA_VIDEO_FORMAT_UNKNOWN) return std::nullopt;
  if (bitmap->offset == 0 || bitmap->size.width == 0 || bitmap->size.height == 0) {
    return PointerImage{};
  }
  auto pixels = pixelsOf(memory, *bitmap);
  const auto isInside = [](std::int32_t place) {
    return place >= 0 && place <= longestPointerSide;
  };
  if (!pixels || !isInside(hotSpot.x) || !isInside(hotSpot.y)) return std::nullopt;
  const PixelRect area{-hotSpot.x, -hotSpot.y, static_cast<int>(bitmap->size.width),
                       static_cast<int>(bitmap->size.height)};
  return PointerImage{area, *std::move(pixels)};
}

/// Far outside any picture it is as good as nowhere.
bool isReachable(spa_point place) {
  constexpr std::int32_t farthest = 0x7fff;
  return place.x > -farthest && place.x < farthest && place.y > -farthest && place.y < farthest;
}

}  // namespace

PointerNews readPointerMeta(std::span<const std::uint8_t> meta) {
  PointerNews news;
  const auto cursor = copyOf<spa_meta_cursor>(meta, 0);
  if (!cursor || !spa_meta_cursor_is_valid(&*cursor)) return news;
  if (isReachable(cursor->position)) news.place = {cursor->position.x, cursor->position.y};
  if (cursor->bitmap_offset >= sizeof(spa_meta_cursor) && cursor->bitmap_offset < meta.size()) {
    news.image = imageOf(meta.subspan(cursor->bitmap_offset), cursor->hotspot);
  }
  return news;
}

}  // namespace vistrel::platform::linux_desktop
