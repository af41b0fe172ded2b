#pragma once

#include <memory>

#include "platform/linux/x11/picture/PictureStore.h"
#include "tests/support/Picture.h"

namespace vistrel::platform::linux_desktop {

/// In memory, unlike the server's pictures.
using Bitmap = testbed::Picture;

/// A picture in the display server, as of a source window, with `margin` garish pixels around it
/// that do not belong to it.
std::shared_ptr<const LivePicture> uploaded(Connection& connection, const Bitmap& picture,
                                            int margin = 0);

/// What stands in a canvas.
Bitmap contentsOf(Connection& connection, const Canvas& canvas);

/// The picture scaled by the definition: each pixel is the mean of the area that it covers.
Bitmap areaAveraged(const Bitmap& source, PixelSize size);

/// The mean difference of the channels of all pixels.
double meanError(const Bitmap& a, const Bitmap& b);

}  // namespace vistrel::platform::linux_desktop
