#pragma once

#include <string>
#include <vector>

namespace vistrel::platform {

/// What `Alert::runModal` answers for the first button; the next ones count up from it.
inline constexpr int alertFirstButtonReturn = 1000;

/// A message that waits for an answer. Main thread.
struct Alert {
  std::string messageText;
  std::string informativeText;
  /// In order, the first being the default. Closing the alert answers like the last.
  std::vector<std::string> buttonTitles;

  int runModal() const;
};

}  // namespace vistrel::platform
