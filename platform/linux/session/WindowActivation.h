#pragma once

#include <cstdint>

namespace vistrel::platform::linux_desktop {

/// Brings windows to the front, other programs' and this one's. Main thread.
class WindowActivation {
 public:
  virtual ~WindowActivation() = default;

  /// Whether a program of that process has windows.
  virtual bool hasWindows(std::int32_t processID) = 0;
  /// Brings all windows of a process to the front in the order in which they lie, and gives the
  /// frontmost one the keyboard: one on the desktop that is shown if there is any, else its own
  /// desktop is shown. False when it has none.
  virtual bool activateWindows(std::int32_t processID) = 0;
  /// Has the manager bring a window to the front and give it the keyboard, for something that a
  /// person did at `time` of the server's: it may refuse where they have gone on to something else
  /// since. The window is one of the toolkit's, whose requests have been synced.
  virtual void activateWindow(std::uint32_t window, std::uint32_t time) = 0;
  /// Raises a window in its layer, without giving it the keyboard. One that has gone needs none.
  /// Returns once the server has done so, or has passed it on to the manager.
  virtual void raise(std::uint32_t window) = 0;
};

}  // namespace vistrel::platform::linux_desktop
