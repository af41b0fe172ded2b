#include <cassert>

#include "mirror/LiveDotColors.h"
#include "mirror/RollUpFrames.h"
#include "mirror/WindowMirrorHUDController.h"

namespace vistrel {

using platform::Rect;

void WindowMirrorHUDController::toggleRollUp() {
  rolledUp_ = !rolledUp_;
  const Rect frame = panel_->frame();
  if (rolledUp_) frameBeforeRollUp_ = frame;
  panel_->setContentMinSize(rolledUp_ ? rolledUpPanelMinSize : panelMinSize);
  panel_->setFrame(
      rolledUp_ ? rolledUpFrame(frame) : rolledDownFrame(frame, frameBeforeRollUp_, aspect_),
      /*display=*/true, /*animate=*/true);
  card_->setNeedsLayout();
}

void WindowMirrorHUDController::closeClicked() {
  close();
  onClosed_(windowID_);
}

void WindowMirrorHUDController::showStatus(const std::string& text) {
  assert(platform::mainQueue().isCurrent());
  statusLabel_->setStringValue(text);
  statusLabel_->setHidden(false);
  setLiveDot(errorState);
}

}  // namespace vistrel
