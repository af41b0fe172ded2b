#pragma once

#include <cstdint>
#include <optional>

#include "platform/Geometry.h"

namespace vistrel {

/// In pixels.
struct CaptureSize {
  std::int64_t width = 0;
  std::int64_t height = 0;

  friend bool operator==(const CaptureSize&, const CaptureSize&) = default;
};

/// The size that a capture starts with: the source's own (points) at `backingScale` pixels per
/// point, truncated, at least 2 each way.
CaptureSize initialCaptureSize(platform::Size source, double backingScale);

/// The size that a capture of `captureWidth` pixels grows to for a panel `panelWidth` points wide;
/// none while the panel is at most 15 % wider in pixels, or the capture is at its cap of twice the
/// source's pixel width. `source` in points, each side at least 1. A capture never shrinks.
std::optional<CaptureSize> grownCaptureSize(std::int64_t captureWidth, double panelWidth,
                                            platform::Size source, double backingScale);

}  // namespace vistrel
