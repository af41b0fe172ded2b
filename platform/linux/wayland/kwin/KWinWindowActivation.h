#pragma once

#include <memory>
#include <utility>

#include "platform/linux/session/WindowActivation.h"
#include "platform/linux/wayland/kwin/KWinMover.h"

namespace vistrel::platform::linux_desktop {

/// Has KWin bring programs with native windows to the front; others, and windows of this program's,
/// are left to X's half. Main thread.
class KWinWindowActivation final : public WindowActivation {
 public:
  KWinWindowActivation(std::unique_ptr<WindowActivation> x, std::shared_ptr<KWinMover> mover)
      : x_(std::move(x)), mover_(std::move(mover)) {}

  bool hasWindows(std::int32_t processID) override {
    return x_->hasWindows(processID) || hasNativeWindows(processID);
  }
  bool activateWindows(std::int32_t processID) override {
    return hasNativeWindows(processID) ? mover_->activateWindows(processID)
                                       : x_->activateWindows(processID);
  }
  void activateWindow(std::uint32_t window, std::uint32_t time) override {
    x_->activateWindow(window, time);
  }
  void raise(std::uint32_t window) override { x_->raise(window); }

 private:
  bool hasNativeWindows(std::int32_t processID) { return !mover_->windowsOf(processID).empty(); }

  const std::unique_ptr<WindowActivation> x_;
  const std::shared_ptr<KWinMover> mover_;
};

}  // namespace vistrel::platform::linux_desktop
