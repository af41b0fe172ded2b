#pragma once

#include <functional>

#include "platform/Image.h"
#include "platform/linux/x11/picture/Drawing.h"
#include "platform/linux/x11/picture/LivePicture.h"

namespace vistrel::platform::linux_desktop {

/// Hits exactly the pixels of `PixelBuffer::visitSampleGrid` when `crop` is drawn, unfiltered, into
/// a picture of `columns` × `rows` pixels.
Sampling samplingOfGrid(const PixelRect& crop, int rows, int columns);

/// Reads samples of pictures: the server picks them, nothing else crosses over.
class SampleGrid {
 public:
  explicit SampleGrid(Connection& connection) : connection_(connection) {}

  /// As `PixelBuffer::visitSampleGrid`.
  bool visit(const LivePicture& picture, int rows, int columns,
             const std::function<bool(PixelBGRA)>& visit);

 private:
  Connection& connection_;
  Canvas samples_;
};

}  // namespace vistrel::platform::linux_desktop
