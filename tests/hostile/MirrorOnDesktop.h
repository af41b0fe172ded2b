#pragma once

#include <memory>

#include "mirror/WindowMirrorHUDController.h"
#include "tests/contract/ContractTest.h"

namespace vistrel::hostile {

/// A mirror with its views, on the real backend under a window manager.
class MirrorOnDesktop : public contract::ContractTest {
 protected:
  std::shared_ptr<WindowMirrorHUDController> mirrorOf(const platform::WindowRecord& source) {
    return WindowMirrorHUDController::make(source, 0, [](platform::WindowID) {});
  }

  /// Closes a mirror that nobody else holds, and waits until its panel is gone with it.
  void closeAndDrop(std::shared_ptr<WindowMirrorHUDController> mirror) {
    mirror->close();
    const std::weak_ptr<platform::Window> panel = mirror->panel();
    mirror.reset();
    EXPECT_TRUE(turnUntil([&] { return panel.expired(); }));
  }
};

}  // namespace vistrel::hostile
