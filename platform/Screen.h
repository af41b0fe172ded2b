#pragma once

#include <optional>
#include <vector>

#include "platform/Geometry.h"

namespace vistrel::platform {

/// One monitor that panels may be placed on. Screen space.
struct Screen {
  Rect frame;
  /// The frame less what the desktop reserves (menu bar, docks, panels).
  Rect visibleFrame;
  /// Pixels per point.
  double backingScaleFactor = 1;

  friend bool operator==(const Screen&, const Screen&) = default;
};

/// Pixels per point where there is no screen to ask: what is made then is sharp on any.
inline constexpr double backingScaleWithoutScreen = 2;

/// All screens, the primary one first. Main thread.
std::vector<Screen> screens();

/// The screen of the key window, else the primary one; none when there is no screen. Main thread.
std::optional<Screen> mainScreen();

/// The screen that shows most of `frame`; none when no screen shows any of it.
std::optional<Screen> screenShowing(const Rect& frame, const std::vector<Screen>& screens);

}  // namespace vistrel::platform
