#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "platform/ScreenCapture.h"

namespace vistrel::platform::linux_desktop {

/// Has a person pick a window in the desktop's own dialog, where it does not tell programs which
/// windows there are. Main thread.
class WindowPicking {
 public:
  /// Null when nothing was picked.
  using Completion = std::function<void(WindowRecord picked)>;

  virtual ~WindowPicking() = default;

  /// Whether there is a dialog to be opened, as far as is known.
  virtual bool canPickInteractively() const = 0;
  /// What a person is told of it, in one sentence: why there is none, or why the last one came to
  /// nothing. Empty where there is nothing to tell.
  virtual std::string status() const = 0;
  /// To be called whenever one of these has changed. Nothing is known before; the main queue runs
  /// from now on.
  virtual void setOnChange(std::function<void()> changed) = 0;
  /// Opens the dialog in front of `parent`, a window of the X server or 0 for none. The completion
  /// comes once, later; with nothing where a dialog is open already.
  virtual void pickInteractively(std::uint32_t parent, Completion completion) = 0;
};

}  // namespace vistrel::platform::linux_desktop
