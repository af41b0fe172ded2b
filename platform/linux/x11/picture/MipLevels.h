#pragma once

#include <vector>

#include "platform/linux/x11/server/PixelGeometry.h"

namespace vistrel::platform::linux_desktop {

/// A copy of a picture, most often a smaller one: how many of the picture's pixels each of its own
/// stands for.
struct MipLevel {
  PixelSize size;
  double perPixelX = 1;
  double perPixelY = 1;

  friend bool operator==(const MipLevel&, const MipLevel&) = default;
};

/// The copies through which `source` is drawn at `target`, each made of the one before and the
/// first of the source; the source itself where the target is hardly smaller. The last is twice as
/// large as the target, which comes as near the mean of the pixels as bilinear filters do for
/// little, all others are halves. It is a half as well where that is 1.5 to 2 times as large as the
/// target, since another copy would cost more, and where one side is reduced much more than the
/// other: pixman 0.42 draws nothing of a long source in one step. Never empty.
std::vector<MipLevel> levelsFor(PixelSize source, PixelSize target);

/// The copy of half the size as often as that, at least 1 × 1. An odd row or column at the end is
/// left out; drawing repeats its neighbour there.
MipLevel halfLevel(PixelSize source, int halvings);

/// How far from the middle of a target's pixel, in its sides, the two samples lie of which it is
/// the mean, one above and left, one below and right: a bilinear filter looks at four pixels alone,
/// and misses some of the `reduction` × `reduction` ones. 0 where one sample is enough. Comes in
/// gradually, so that the picture of a panel that is being resized does not jump. `isWhole` where
/// nothing smaller than the source is drawn from.
double sampleSpread(double reduction, bool isWhole);

/// The finest level of halves of which drawing `target` from it alone misses no pixel: bilinear
/// filters reach as far as to a half.
int finestWholeLevel(PixelSize source, PixelSize target);

/// How many of the source's pixels each of the target's stands for, along the less reduced axis.
double reduction(PixelSize source, PixelSize target);

/// The pixels of a copy that depend on `changed` of what it is made of, each of its pixels standing
/// for so many.
PixelRect changedInCopy(const PixelRect& changed, double perPixelX, double perPixelY,
                        PixelSize copy);

/// The pixels of `target` that depend on `changed` of the source, where each depends on pixels up
/// to so many away.
PixelRect changedInTarget(const PixelRect& changed, PixelSize source, PixelSize target,
                          double reach);

/// `source` scaled to lie in the middle of `area` as large as its shape allows. It fills an area
/// that is of its shape but for the rounding to whole pixels: a bar of one pixel is no bar, but a
/// black line.
PixelRect aspectFit(PixelSize source, const PixelRect& area);

}  // namespace vistrel::platform::linux_desktop
