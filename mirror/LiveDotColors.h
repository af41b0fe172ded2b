#pragma once

#include "platform/Color.h"

namespace vistrel {

/// The live dot while frames arrive.
inline constexpr platform::Color liveColor = platform::Color::srgb(0.3, 0.85, 0.45);
/// The live dot once frames have ceased.
inline constexpr platform::Color staleColor = platform::Color::srgb(0.98, 0.7, 0.2);
/// The live dot while a status is shown.
inline constexpr platform::Color errorColor = platform::Color::systemRed();

}  // namespace vistrel
