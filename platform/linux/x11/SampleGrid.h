#pragma once

#include <functional>

#include "platform/Image.h"
#include "platform/linux/x11/Drawing.h"
#include "platform/linux/x11/LivePicture.h"

namespace vistrel::platform::linux_desktop {

/// Hits exactly the pixels of `PixelBuffer::visitSampleGrid` when `crop` is drawn, unfiltered, into
/// a picture of `columns` × `rows` pixels.
Sampling samplingOfGrid(const PixelRect& crop, int rows, int columns);

/// As `PixelBuffer::visitSampleGrid`: the server picks the samples, nothing else crosses over.
bool visitSampleGrid(Connection& connection, const LivePicture& picture, int rows, int columns,
                     const std::function<bool(PixelBGRA)>& visit);

}  // namespace vistrel::platform::linux_desktop
