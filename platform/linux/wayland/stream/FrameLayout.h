#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "platform/linux/x11/server/PixelGeometry.h"

namespace vistrel::platform::linux_desktop {

/// The longest side of a picture that is taken from a stream, in pixels. More than any monitor has,
/// and few enough for RENDER, which counts in 16.16 numbers.
inline constexpr int longestStreamedSide = 16384;

/// What a stream says of the pixels in a piece of shared memory: 32 bits each, top row first. Any
/// of it may be wrong.
struct ClaimedFrame {
  /// As the stream's format says.
  PixelSize size;
  /// Bytes of the memory, from its beginning, that can be read.
  std::uint64_t readable = 0;
  /// Where the frame's bytes begin, and how many there are.
  std::uint64_t offset = 0;
  std::uint64_t bytes = 0;
  /// From row to row, in bytes.
  std::int64_t stride = 0;
  /// What of the frame is the window; all of it where none is said.
  std::optional<PixelRect> crop;
};

/// Where the pixels of a frame lie in its memory. All of its rows do, `stride` bytes long.
struct FrameLayout {
  std::size_t offset = 0;
  int stride = 0;
  PixelSize size;
  /// What of it is the window; not empty.
  PixelRect crop;

  friend bool operator==(const FrameLayout&, const FrameLayout&) = default;
};

/// None where what is claimed leads out of the memory, or cannot be told to the display server.
std::optional<FrameLayout> layoutOf(const ClaimedFrame& claimed);

/// Whether a picture of that size can be taken from a stream.
bool isStreamable(PixelSize size);

}  // namespace vistrel::platform::linux_desktop
