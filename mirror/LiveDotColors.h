#pragma once

#include "platform/Color.h"

namespace vistrel {

/// The live dot while frames arrive.
inline constexpr platform::Color liveColor = platform::Color::srgb(0.3, 0.85, 0.45);
/// The live dot once frames have ceased.
inline constexpr platform::Color staleColor = platform::Color::srgb(0.98, 0.7, 0.2);
/// The live dot while a status is shown.
inline constexpr platform::Color errorColor = platform::Color::systemRed();

/// A state of the live dot: its colour, and what it is called for those who cannot see that.
struct LiveDotState {
  platform::Color color;
  const char* accessibilityLabel;
};

inline constexpr LiveDotState liveState{liveColor, "Live"};
inline constexpr LiveDotState staleState{staleColor, "Not updating"};
inline constexpr LiveDotState errorState{errorColor, "Error"};

}  // namespace vistrel
