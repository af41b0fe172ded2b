#pragma once

#include "platform/linux/x11/server/PixelGeometry.h"

namespace vistrel::platform::linux_desktop {

// A picture and its reductions: level 0 is the picture, each further level half as wide and high.

/// The levels between which a picture is blended; the weight belongs to the coarser one.
struct LevelBlend {
  int finer = 0;
  double coarserWeight = 0;

  int coarsest() const { return coarserWeight > 0 ? finer + 1 : finer; }
  friend bool operator==(const LevelBlend&, const LevelBlend&) = default;
};

/// Trilinear choice for drawing `source` at `target`. Close to a level, that level alone is drawn,
/// which costs half; the other one then comes in gradually, so that the picture of a panel that is
/// being resized does not jump.
LevelBlend levelsFor(PixelSize source, PixelSize target);

/// The finest level of which drawing `target` from it alone misses no pixel: bilinear filters reach
/// as far as to a half.
int finestWholeLevel(PixelSize source, PixelSize target);

/// At least 1 × 1. An odd row or column at the end is left out; drawing repeats its neighbour
/// there.
PixelSize sizeOfLevel(PixelSize source, int level);

/// The pixels of a level that depend on `changed` of the level before it.
PixelRect changedInNextLevel(const PixelRect& changed, PixelSize nextLevel);

/// The pixels of `target` that depend on `changed` of the source, drawn through levels up to
/// `coarsest`.
PixelRect changedInTarget(const PixelRect& changed, PixelSize source, PixelSize target,
                          int coarsest);

/// `source` scaled to lie in the middle of `area` as large as its shape allows. It fills an area
/// that is of its shape but for the rounding to whole pixels: a bar of one pixel is no bar, but a
/// black line.
PixelRect aspectFit(PixelSize source, const PixelRect& area);

}  // namespace vistrel::platform::linux_desktop
