#pragma once

#include <memory>
#include <vector>

#include "platform/Menu.h"
#include "platform/Window.h"

namespace vistrel::platform::linux_desktop {

/// The program's ordinary windows. Main thread.
class OpenWindows {
 public:
  virtual ~OpenWindows() = default;
  /// Those on screen or minimised, the oldest first.
  virtual std::vector<std::shared_ptr<Window>> openWindows() const = 0;
  /// Null when another program has the keyboard.
  virtual Window* keyWindow() const = 0;
};

/// A menu with the items of `menu`, followed by the open windows: choosing one brings it to the
/// front, and the one with the keyboard is marked. `windows` outlives it.
std::shared_ptr<Menu> withOpenWindows(std::shared_ptr<Menu> menu, const OpenWindows& windows);

}  // namespace vistrel::platform::linux_desktop
