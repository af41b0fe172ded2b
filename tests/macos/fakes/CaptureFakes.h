#pragma once

#import <ScreenCaptureKit/ScreenCaptureKit.h>
#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

// The capture service as a scenario drives it.

namespace vistrel::fake {

/// What the service delivers. Pixels.
struct Frame {
  /// None for a sample without attachments.
  std::optional<SCFrameStatus> status = SCFrameStatusComplete;
  /// Samples of other states than `SCFrameStatusComplete` carry none: SCFrameStatus.
  bool hasPicture = true;
  std::size_t width = 40;
  std::size_t height = 20;
  /// Of every pixel: blue, green, red, alpha.
  std::uint8_t pixel[4] = {40, 80, 200, 255};
  /// Of the pixel at a place, where they differ.
  std::function<std::array<std::uint8_t, 4>(std::size_t x, std::size_t y)> pixelAt;
};

/// The picture of a frame, which the caller releases.
CVPixelBufferRef makePicture(const Frame& frame);

/// All streams, in the order in which they were made.
std::vector<SCStream*> streams();

/// Puts a frame into the queue that the stream's output asked for.
void enqueue(SCStream* stream, const Frame& frame);
/// Does so and turns the queues.
void deliver(SCStream* stream, const Frame& frame);

/// Ends a running stream, as the service does when its window or its permission goes.
void stopWithError(SCStream* stream, const std::string& description);

}  // namespace vistrel::fake
