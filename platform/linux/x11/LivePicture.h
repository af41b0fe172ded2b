#pragma once

#include "platform/linux/x11/Drawing.h"

namespace vistrel::platform::linux_desktop {

/// What the server holds of a source window: the picture that the window draws into as long as it
/// keeps its size and stays mapped, and its last one after that.
struct LivePicture {
  Pixmap pixmap;
  Picture picture;  // read as opaque
  /// The part of the pixmap that a person sees as the window.
  PixelRect crop;

  PixelSize size() const { return sizeOf(crop); }
};

}  // namespace vistrel::platform::linux_desktop
