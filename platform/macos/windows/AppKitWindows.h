#pragma once

#include "platform/Backend.h"

namespace vistrel::platform::macos {

/// Windows, screens and alerts of AppKit. Main thread.
class AppKitWindows final : public WindowBackend {
 public:
  std::unique_ptr<WindowPeer> makePeer(Window& window, bool isPanel) override;
  std::vector<Screen> screens() override;
  std::optional<Screen> mainScreen() override;
  Window* keyWindow() override;
  Point mouseLocation() override;
  Size intrinsicContentSize(const Control& control) override;
  int runModal(const Alert& alert) override;
};

}  // namespace vistrel::platform::macos
