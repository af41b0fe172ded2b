#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "platform/Geometry.h"

namespace vistrel::platform {

/// Four-character code of a pixel layout, as in CoreVideo.
using PixelFormat = std::uint32_t;
inline constexpr PixelFormat pixelFormat32BGRA = 0x42475241;  // "BGRA"

struct PixelBGRA {
  std::uint8_t blue = 0;
  std::uint8_t green = 0;
  std::uint8_t red = 0;
  std::uint8_t alpha = 0;
};

/// One frame's pixels, wherever they lie: in host memory or in the display server. Immutable once
/// delivered. Read on the queue that delivered it.
class PixelBuffer {
 public:
  virtual ~PixelBuffer() = default;

  virtual PixelFormat pixelFormat() const = 0;
  /// In pixels.
  virtual std::int64_t width() const = 0;
  virtual std::int64_t height() const = 0;

  /// Visits the pixels of a grid of `rows` × `columns` samples that spans the buffer, row by row
  /// from the top-left: sample (i, j) is the pixel at row i × (height − 1) / (rows − 1), column
  /// j × (width − 1) / (columns − 1), truncated. Ends early once `visit` answers false. Answers
  /// false, having visited nothing, when the pixels cannot be read. Needs pixel format 32BGRA,
  /// `rows` and `columns` of at least 2.
  virtual bool visitSampleGrid(int rows, int columns,
                               const std::function<bool(PixelBGRA)>& visit) const = 0;
};

/// Pixels of 32BGRA in host memory that somebody else keeps, top row first.
struct HostPixels {
  const std::uint8_t* base;
  std::int64_t width;
  std::int64_t height;
  std::int64_t bytesPerRow;
};

/// `PixelBuffer::visitSampleGrid` over pixels in host memory.
void visitSampleGridInMemory(const HostPixels& pixels, int rows, int columns,
                             const std::function<bool(PixelBGRA)>& visit);

/// A pixel buffer in host memory.
class HostPixelBuffer : public PixelBuffer {
 public:
  /// `bytes` holds height × bytesPerRow bytes, top row first; empty stands for a buffer whose
  /// memory cannot be reached.
  HostPixelBuffer(PixelFormat format, std::int64_t width, std::int64_t height,
                  std::int64_t bytesPerRow, std::vector<std::uint8_t> bytes);

  PixelFormat pixelFormat() const override { return format_; }
  std::int64_t width() const override { return width_; }
  std::int64_t height() const override { return height_; }
  std::int64_t bytesPerRow() const { return bytesPerRow_; }
  const std::vector<std::uint8_t>& bytes() const { return bytes_; }
  bool visitSampleGrid(int rows, int columns,
                       const std::function<bool(PixelBGRA)>& visit) const override;

 private:
  PixelFormat format_;
  std::int64_t width_;
  std::int64_t height_;
  std::int64_t bytesPerRow_;
  std::vector<std::uint8_t> bytes_;
};

/// A picture ready to be shown by a layer. What it holds is the backend's affair: where pixels stay
/// in the display server it stands for a store and a generation of it, which a later commit may
/// overwrite, also on the screen where a layer shows it: what a person sees does not wait for the
/// main thread. Its presence may be relied on, never its bytes. Any thread may drop it.
class Image {
 public:
  virtual ~Image() = default;
};

struct ImageContextOptions {
  bool useSoftwareRenderer = false;
};

/// Makes images from frames. One per mirror; used on that mirror's queue alone.
class ImageContext {
 public:
  virtual ~ImageContext() = default;
  /// The whole extent of `buffer` as an image; null when it cannot be made. Making the image is the
  /// commit: the backend takes the frame's pixels over at this moment, and a frame dropped before
  /// it leaves no trace.
  virtual std::shared_ptr<const Image> createImage(
      const std::shared_ptr<const PixelBuffer>& buffer) = 0;
};

std::shared_ptr<ImageContext> makeImageContext(const ImageContextOptions& options);

}  // namespace vistrel::platform
