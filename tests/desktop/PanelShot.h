#pragma once

#include <string>
#include <vector>

#include "tests/support/Picture.h"

namespace vistrel::testbed {

/// A colour that nothing of a panel has. A manager's shadow only darkens it.
inline constexpr Rgb backdropColour{255, 0, 255};

struct Size {
  int width = 0;
  int height = 0;
};

/// Judges a shot of the screen in which a panel lies on a backdrop of `backdropColour`, mirroring a
/// source of four colours that is twice as wide as high. Wherever the panel is in the shot and
/// however large, everything of it has to be where it belongs at that size: border, title bar,
/// picture, bars beside it, grip. Empty when it is; else what is wrong.
///
/// A panel of one of the sizes `cutFrom` may be cut at its right and lower side: it is drawn a
/// moment before or after a manager shapes its frame or has put out all of its own picture.
std::string faultsOf(const Picture& shot, const std::vector<Size>& cutFrom = {});

}  // namespace vistrel::testbed
