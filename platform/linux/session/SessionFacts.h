#pragma once

#include <optional>
#include <string>
#include <vector>

namespace vistrel::platform::linux_desktop {

/// What of the session decides whether windows can be captured and moved.
struct SessionFacts {
  /// What capturing is built of and the display server does not offer.
  std::vector<std::string> missingForCapture;
  /// The command that lets this program list and capture native windows of a Wayland session too,
  /// where the compositor keeps them from it; empty where it does not.
  std::string grantCommand;
  /// What the window manager calls itself, which may be nothing; none where no manager runs.
  std::optional<std::string> managerName;
};

}  // namespace vistrel::platform::linux_desktop
