#pragma once

#include <memory>

#include "platform/ScreenCapture.h"
#include "platform/linux/x11/server/PixelGeometry.h"

namespace vistrel::platform::linux_desktop {

class Capture;

/// The picture of a window as it was when a capture handed it out. Its pixels stay in the server;
/// they can be reached as long as the stream runs and the window keeps its size.
class WindowPixelBuffer : public PixelBuffer {
 public:
  WindowPixelBuffer(std::weak_ptr<Capture> capture, PixelSize size)
      : capture_(std::move(capture)), size_(size) {}

  PixelFormat pixelFormat() const override { return pixelFormat32BGRA; }
  std::int64_t width() const override { return size_.width; }
  std::int64_t height() const override { return size_.height; }
  bool visitSampleGrid(int rows, int columns,
                       const std::function<bool(PixelBGRA)>& visit) const override;
  /// Has the mirror take the picture over; null when the pixels are out of reach.
  std::shared_ptr<const Image> commit() const;

 private:
  std::shared_ptr<Capture> reachableCapture() const;

  std::weak_ptr<Capture> capture_;
  PixelSize size_;
};

/// A whole new picture.
class CompleteSample : public SampleBuffer {
 public:
  explicit CompleteSample(std::shared_ptr<const PixelBuffer> buffer) : buffer_(std::move(buffer)) {}

  bool isValid() const override { return true; }
  std::optional<std::int64_t> frameStatus() const override {
    return static_cast<std::int64_t>(FrameStatus::complete);
  }
  std::shared_ptr<const PixelBuffer> imageBuffer() const override { return buffer_; }

 private:
  std::shared_ptr<const PixelBuffer> buffer_;
};

/// Commits window pixel buffers; it has nothing of its own, since their mirror keeps the pictures.
class WindowImageContext : public ImageContext {
 public:
  std::shared_ptr<const Image> createImage(
      const std::shared_ptr<const PixelBuffer>& buffer) override;
};

}  // namespace vistrel::platform::linux_desktop
