#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>

#include "platform/Image.h"
#include "platform/ScreenCapture.h"

namespace vistrel::platform::simulated {

using Pixels = std::shared_ptr<const PixelBuffer>;

// Pixel buffers in host memory, opaque unless the colour says otherwise.

Pixels solidPixels(std::int64_t width, std::int64_t height, PixelBGRA color,
                   PixelFormat format = pixelFormat32BGRA);
Pixels blackPixels(std::int64_t width, std::int64_t height);
/// Four colours, one per quarter, in reading order.
Pixels quadrantPixels(std::int64_t width, std::int64_t height,
                      const std::array<PixelBGRA, 4>& colors);
/// Black but for one pixel, with the padding at the end of each row in a bright colour.
Pixels blackPixelsBut(std::int64_t width, std::int64_t height, std::int64_t x, std::int64_t y,
                      PixelBGRA color);
/// A buffer whose memory cannot be reached.
Pixels unreachablePixels(std::int64_t width, std::int64_t height);

/// What a frame source delivers; every member may lie.
struct Frame {
  Pixels image;
  std::optional<std::int64_t> status = static_cast<std::int64_t>(FrameStatus::complete);
  bool valid = true;
};

/// A frame as a sample.
class SimulatedSample : public SampleBuffer {
 public:
  explicit SimulatedSample(Frame frame) : frame_(std::move(frame)) {}

  bool isValid() const override { return frame_.valid; }
  std::optional<std::int64_t> frameStatus() const override { return frame_.status; }
  std::shared_ptr<const PixelBuffer> imageBuffer() const override { return frame_.image; }

 private:
  const Frame frame_;
};

/// A picture that is the frame it was made from.
class SimulatedImage : public Image {
 public:
  explicit SimulatedImage(std::shared_ptr<const HostPixelBuffer> pixels)
      : pixels_(std::move(pixels)) {}
  const HostPixelBuffer& pixels() const { return *pixels_; }

 private:
  const std::shared_ptr<const HostPixelBuffer> pixels_;
};

}  // namespace vistrel::platform::simulated
