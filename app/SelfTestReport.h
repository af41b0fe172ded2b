#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/Displays.h"
#include "platform/Geometry.h"

namespace vistrel {

/// What the self-test of virtual displays has found. Global display space.
struct SelfTestFindings {
  bool created = false;
  platform::DisplayID displayID = 0;
  /// Displays online before it was made, and after it was let go.
  std::uint32_t onlineBefore = 0;
  std::uint32_t onlineAfter = 0;
  std::size_t screens = 0;
  /// The main display's right edge.
  double mainMaxX = 0;
  platform::Rect bounds;
};

/// One line with its line feed; real numbers are truncated. Ends the program abnormally when one is
/// not finite or does not fit a 64-bit integer.
std::string selfTestReport(const SelfTestFindings& findings);

}  // namespace vistrel
