#pragma once

#include <cstddef>
#include <vector>

#include "platform/ScreenCapture.h"

namespace vistrel::platform::linux_desktop {

/// A window of a merged list: which of the two lists it is taken from, and where it is there.
struct MergedWindow {
  enum class From { x, kwin };

  From from = From::x;
  std::size_t index = 0;

  friend bool operator==(const MergedWindow&, const MergedWindow&) = default;
};

/// One list of the windows that X's half knows and of those that KWin knows, both topmost first;
/// X's clients are among the latter. A window that both know is taken from X's list, whose pictures
/// cost less: one of the same process and title, or else of the same process and place. The order
/// is KWin's; what it does not know comes right above the window that it is above in X's.
std::vector<MergedWindow> mergeWindows(const std::vector<WindowRecord>& x,
                                       const std::vector<WindowRecord>& kwin);

}  // namespace vistrel::platform::linux_desktop
