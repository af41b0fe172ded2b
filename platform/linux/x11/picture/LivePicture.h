#pragma once

#include <algorithm>
#include <vector>

#include "platform/linux/x11/picture/Drawing.h"

namespace vistrel::platform::linux_desktop {

/// What the server holds of a source window: the picture that the window draws into as long as it
/// keeps its size and stays mapped, and its last one after that.
struct LivePicture {
  Pixmap pixmap;
  Picture picture;  // read as opaque
  /// The part of the pixmap that a person sees as the window.
  PixelRect crop;
  /// What the window's shape leaves out, in pixels of the picture: the corners of a rounded frame.
  /// Anything may stand there; copies are black there, as they are wherever nothing is shown.
  std::vector<PixelRect> outside;

  PixelSize size() const { return sizeOf(crop); }
  bool isOutside(int x, int y) const {
    return std::any_of(outside.begin(), outside.end(), [&](const PixelRect& each) {
      return contains(each, {x, y, 1, 1});
    });
  }
};

}  // namespace vistrel::platform::linux_desktop
