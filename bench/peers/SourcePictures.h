#pragma once

#include "tests/support/Picture.h"

namespace vistrel::bench {

/// Pictures of what windows show, for judging how well they are made smaller. The same at every
/// call.

/// Smooth gradients with soft edges and a little noise; each `variant` differs everywhere.
testbed::Picture photo(int width, int height, int variant = 0);
/// Lines of small dark strokes on white, one to two pixels thick, as writing has them.
testbed::Picture writing(int width, int height);
/// Black and white pixels in turns, along rows and columns: what aliases the most.
testbed::Picture grid(int width, int height);

}  // namespace vistrel::bench
