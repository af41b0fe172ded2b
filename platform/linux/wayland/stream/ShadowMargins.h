#pragma once

#include "platform/linux/wayland/stream/TileDifferences.h"

namespace vistrel::platform::linux_desktop {

/// Tells a window from the shadow that it is streamed with, which is pure black: margins on three
/// sides at least, about as wide as one another, that end in straight edges and stay black over all
/// frames of one size. Where that cannot be told, all of it is the window: content that is black is
/// never cut. One for each stream.
class ShadowMargins {
 public:
  /// The window in the newest frame. Pixels have blue first; their fourth byte says nothing.
  PixelRect windowIn(PixelRows rows, PixelSize size);

 private:
  /// What was seen of the sides of `drawn_`, each in its own turn.
  struct Edges {
    bool left = false;
    bool top = false;
    bool right = false;
    bool bottom = false;

    friend bool operator==(const Edges&, const Edges&) = default;
  };

  void noticeStraightEdges(PixelRows rows);

  PixelSize size_;
  PixelRect drawn_;  // around all that was not black so far; empty before the first such pixel
  Edges straight_;   // which of its sides have been seen to be edges
};

}  // namespace vistrel::platform::linux_desktop
