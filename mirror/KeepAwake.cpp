#include <cassert>

#include "mirror/WindowMirrorHUDController.h"
#include "parking/WindowParker.h"
#include "platform/Alert.h"

namespace vistrel {

using platform::Point;
using platform::Rect;

namespace {

/// Where a parked window comes on its hidden display, from the display's top-left corner. Points.
constexpr double insetOnHiddenDisplay = 8;

/// How much of a window parked in the main screen's corner stays on screen, each way. Points.
constexpr double partInCorner = 40;

constexpr Point cornerWithoutScreen{1400, 860};

/// The screen's size stands for a place in global display space, which it is where there is one
/// screen.
Point mainScreenCorner() {
  const auto screen = platform::mainScreen();
  if (!screen) return cornerWithoutScreen;
  return {screen->frame.width() - partInCorner, screen->frame.height() - partInCorner};
}

void askForAccessibility() {
  platform::isProcessTrustedWithOptions(/*prompt=*/true);
  WindowParker::openAccessibilitySettings();
  const platform::Alert alert{
      .messageText = "Allow Accessibility for Vistrel",
      .informativeText =
          "“Keep Awake” parks the source window at a screen corner so it keeps "
          "rendering while you work elsewhere. Turn on Vistrel in System Settings ▸ "
          "Privacy & Security ▸ Accessibility, then try again.",
      .buttonTitles = {"OK"}};
  alert.runModal();
}

}  // namespace

void WindowMirrorHUDController::toggleKeepAwake() {
  assert(platform::mainQueue().isCurrent());
  if (isClosed()) return;
  if (keepAwake_) {
    restoreParkedWindow();
    keepAwake_ = false;
    return;
  }
  if (!platform::isProcessTrusted()) return askForAccessibility();
  auto window = sourcePID_ < 1 ? nullptr : WindowParker::axWindow(windowID_, sourcePID_);
  if (!window) return flashStatus("Couldn't reach that window via Accessibility.");
  park(std::move(window));
  keepAwake_ = true;
  stopCapture();
  startCapture();
}

void WindowMirrorHUDController::park(std::shared_ptr<platform::AccessibilityElement> window) {
  savedOrigin_ = WindowParker::position(*window);
  parkedWindow_ = std::move(window);
  if (auto host = VirtualDisplayHost::make(sourcePointSize_)) {
    virtualHost_ = std::move(host);
    const Rect& bounds = virtualHost_->bounds();
    WindowParker::move(*parkedWindow_, {bounds.minX() + insetOnHiddenDisplay,
                                        bounds.minY() + insetOnHiddenDisplay});
  } else {
    WindowParker::move(*parkedWindow_, mainScreenCorner());
  }
}

void WindowMirrorHUDController::restoreParkedWindow() {
  if (parkedWindow_ && savedOrigin_) WindowParker::move(*parkedWindow_, *savedOrigin_);
  parkedWindow_.reset();
  savedOrigin_.reset();
  virtualHost_.reset();
}

}  // namespace vistrel
