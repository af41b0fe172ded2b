#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "platform/AccessibilityElement.h"
#include "platform/Geometry.h"
#include "platform/ScreenCapture.h"

/// Reaches other programs' windows through Accessibility. Positions are in global display space.
/// Main thread.
namespace vistrel::WindowParker {

/// The window of that number among those that the program lists; null when there is none, or when
/// the system cannot tell windows' numbers.
std::shared_ptr<platform::AccessibilityElement> axWindow(platform::WindowID windowID,
                                                         std::int32_t pid);

/// None when it cannot be read.
std::optional<platform::Point> position(platform::AccessibilityElement& window);

/// Asks the window to go there. Whether it does is up to its program.
void move(platform::AccessibilityElement& window, platform::Point position);

/// Opens the system's settings page for the permission to use Accessibility.
void openAccessibilitySettings();

}  // namespace vistrel::WindowParker
