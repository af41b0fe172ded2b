#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "platform/linux/x11/server/PixelGeometry.h"

namespace vistrel::platform::linux_desktop {

/// The longest side of a pointer's picture that is taken from a stream, in pixels.
inline constexpr int longestPointerSide = 1024;

/// The pointer's picture; as RENDER's a8r8g8b8, premultiplied, rows without gaps.
struct PointerImage {
  /// Around the hot spot.
  PixelRect area;
  std::vector<std::uint32_t> pixels;
};

/// What a stream says of the pointer with one of its buffers.
struct PointerNews {
  /// Of the hot spot, in pixels of the stream; none while the pointer is not over the window.
  struct Place {
    int x = 0;
    int y = 0;

    friend bool operator==(const Place&, const Place&) = default;
  };
  std::optional<Place> place;
  /// Another picture from now on, which may be empty; none where it stays what it was.
  std::optional<PointerImage> image;
};

/// Reads a spa_meta_cursor of `meta.size()` bytes, in memory that somebody else may write to
/// meanwhile. A picture that leads out of it, is too large or of an unknown format is left out.
PointerNews readPointerMeta(std::span<const std::uint8_t> meta);

}  // namespace vistrel::platform::linux_desktop
