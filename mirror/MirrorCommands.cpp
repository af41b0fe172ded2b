#include <cassert>

#include "mirror/PanelLayout.h"
#include "mirror/RollUpFrames.h"
#include "mirror/ScaledFrame.h"
#include "mirror/WindowMirrorHUDController.h"
#include "platform/Workspace.h"

namespace vistrel {

using platform::Rect;

namespace {

/// How long a flashed text stays, in seconds.
constexpr double flashDuration = 2.5;

}  // namespace

void WindowMirrorHUDController::bringForward() {
  if (isClosed()) return;
  if (rolledUp_) toggleRollUp();
  panel_->orderFrontRegardless();
}

void WindowMirrorHUDController::toggleRollUp() {
  if (isClosed()) return;
  rolledUp_ = !rolledUp_;
  const Rect frame = panel_->frame();
  if (rolledUp_) frameBeforeRollUp_ = frame;
  panel_->setContentMinSize(rolledUp_ ? rolledUpPanelMinSize : panelMinSize);
  panel_->setFrame(
      rolledUp_ ? rolledUpFrame(frame) : rolledDownFrame(frame, frameBeforeRollUp_, aspect_),
      platform::Redisplay::atOnce, platform::FrameChange::animated);
  views_.card()->setNeedsLayout();
}

void WindowMirrorHUDController::setScale(double factor) {
  if (isClosed()) return;
  if (rolledUp_) toggleRollUp();
  panel_->setFrame(scaledFrame(panel_->frame(), sourcePointSize_, aspect_, factor,
                               panel_->contentMinSize().width),
                   platform::Redisplay::atOnce, platform::FrameChange::animated);
  views_.card()->setNeedsLayout();
}

void WindowMirrorHUDController::toggleRollUpMenu() { toggleRollUp(); }

void WindowMirrorHUDController::recaptureMenu() {
  if (isClosed()) return;
  stopCapture();
  startCapture();
}

void WindowMirrorHUDController::toggleKeepAwakeMenu() { toggleKeepAwake(); }

void WindowMirrorHUDController::scaleFromMenu(const platform::MenuItem& sender) {
  setScale(sender.tag() / 100.0);
}

void WindowMirrorHUDController::activateSource() {
  if (isClosed() || sourcePID_ < 1) return;
  const auto application = platform::RunningApplication::withProcessIdentifier(sourcePID_);
  if (application) application->activate(platform::ActivationOptions::activateAllWindows);
}

void WindowMirrorHUDController::hideAllMenu() {
  if (isClosed()) return;
  if (const auto host = host_.lock()) host->closeAll();
}

void WindowMirrorHUDController::closeClicked() {
  if (isClosed()) return;
  close();
  onClosed_(windowID_);
}

void WindowMirrorHUDController::showStatus(const std::string& text) {
  assert(platform::mainQueue().isCurrent());
  views_.showStatus(text);
}

void WindowMirrorHUDController::flashStatus(const std::string& text) {
  showStatus(text);
  platform::mainAsyncAfter(flashDuration, [weak = weak_from_this()] {
    const auto self = ifOpen(weak);
    if (self && self->lastImage_.load()) self->views_.hideStatus();
  });
}

}  // namespace vistrel
