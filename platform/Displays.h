#pragma once

#include <cstdint>
#include <memory>

#include "platform/Geometry.h"

namespace vistrel::platform {

// The displays of the display server, as against the screens of Screen.h, which are what windows of
// this program are placed on. Global display space throughout: points, origin at the top-left
// corner of the main display, y growing downwards. Main thread.

using DisplayID = std::uint32_t;

/// Of the display whose top-left corner is the origin.
DisplayID mainDisplayID();

/// All zero when there is no such display.
Rect displayBounds(DisplayID display);

/// How many displays are online, virtual ones included.
std::uint32_t onlineDisplayCount();

/// Raw value is CoreGraphics' CGConfigureOption.
enum class ConfigureOption { forSession = 1 };

/// A change of the displays' arrangement in the making. Dropped without `complete`, it changes
/// nothing. What the display server makes of it shows in `displayBounds` alone.
class DisplayConfiguration {
 public:
  virtual ~DisplayConfiguration() = default;

  /// Asks for the display's top-left corner to be at (x, y).
  virtual void configureOrigin(DisplayID display, std::int32_t x, std::int32_t y) = 0;
  /// Has what was asked for take effect before it returns, for as long as `option` says. Once.
  virtual void complete(ConfigureOption option) = 0;
};

/// Null when the display server refuses to be configured.
std::unique_ptr<DisplayConfiguration> beginDisplayConfiguration();

}  // namespace vistrel::platform
