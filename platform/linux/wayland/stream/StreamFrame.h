#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "platform/linux/wayland/stream/FrameLayout.h"
#include "platform/linux/wayland/stream/SharedMemory.h"

namespace vistrel::platform::linux_desktop {

/// A picture in shared memory.
struct StreamFrame {
  std::shared_ptr<const SharedMemory> memory;
  FrameLayout layout;
  /// Of the crop in the stream's picture, in which the pointer's place is told.
  PixelRect place;
  /// Whether it came because the stream had become active, so that nothing need have changed.
  bool isFirst = false;

  /// Of the crop's first pixel.
  const std::uint8_t* pixels() const {
    constexpr int bytesPerPixel = 4;
    return memory->bytes() + layout.offset + std::ptrdiff_t{layout.crop.y} * layout.stride +
           std::ptrdiff_t{layout.crop.x} * bytesPerPixel;
  }
  PixelSize size() const { return sizeOf(layout.crop); }
};

}  // namespace vistrel::platform::linux_desktop
