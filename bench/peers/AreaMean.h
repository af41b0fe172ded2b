#pragma once

#include "bench/peers/Subject.h"
#include "tests/support/Picture.h"

namespace vistrel::bench {

/// The best that a smaller picture of `source` can be: each pixel is the mean of what it covers, by
/// area. `shift` moves what it covers by so many of its own pixels.
struct Shift {
  double x = 0;
  double y = 0;
};
testbed::Picture areaMean(const testbed::Picture& source, Extent extent, Shift shift);

/// In decibels, at most 99, over what two pictures of one size have in common within `part`.
double signalToNoise(const testbed::Picture& a, const testbed::Picture& b, testbed::Rect part);

}  // namespace vistrel::bench
