#include "mirror/WindowMirrorHUDController.h"

#include <cassert>
#include <utility>

#include "mirror/Freshness.h"
#include "mirror/PanelLayout.h"
#include "platform/Screen.h"

namespace vistrel {

using platform::Rect;

namespace {

std::int32_t processID(const platform::ShareableWindow& window) {
  return window.owningApplication ? window.owningApplication->processID : -1;
}

}  // namespace

std::shared_ptr<WindowMirrorHUDController> WindowMirrorHUDController::make(
    const platform::WindowRecord& window, int cascade, OnClosed onClosed,
    std::weak_ptr<MirrorHost> host) {
  auto controller = platform::ownedByMain(
      new WindowMirrorHUDController(*window, std::move(onClosed), std::move(host)));
  controller->connectViews();
  controller->positionInitially(cascade);
  return controller;
}

WindowMirrorHUDController::WindowMirrorHUDController(const platform::ShareableWindow& window,
                                                     OnClosed onClosed,
                                                     std::weak_ptr<MirrorHost> host)
    : windowID_(window.windowID),
      sourceTitle_(window.title.value_or("Untitled")),
      appName_(window.applicationNameOr("Window")),
      sourcePID_(processID(window)),
      onClosed_(std::move(onClosed)),
      host_(std::move(host)),
      sourcePointSize_(usableSourceSize(window.frame.size)),
      aspect_(sourcePointSize_.width / sourcePointSize_.height),
      panel_(MirrorPanel::make(initialPanelSize(sourcePointSize_))),
      views_(displayName()),
      sampleQueue_(platform::makeSerialQueue("com.tollbeck.vistrel.capture",
                                             platform::QualityOfService::userInteractive)),
      ciContext_(platform::makeImageContext({.useSoftwareRenderer = false})) {}

std::shared_ptr<WindowMirrorHUDController> WindowMirrorHUDController::ifOpen(
    const std::weak_ptr<WindowMirrorHUDController>& mirror) {
  auto held = mirror.lock();
  return held && !held->isClosed() ? held : nullptr;
}

std::string WindowMirrorHUDController::displayName() const {
  return appName_ + " — " + sourceTitle_;
}

void WindowMirrorHUDController::connectViews() {
  connectCard();
  views_.setCloseAction(
      {"closeClicked", weak_from_this(), &WindowMirrorHUDController::closeClicked});
  panel_->setContentView(views_.card());
}

void WindowMirrorHUDController::connectCard() {
  const auto& card = views_.card();
  card->onDoubleClick = [weak = weak_from_this()] {
    if (const auto self = ifOpen(weak)) self->toggleRollUp();
  };
  card->onLayout = [weak = weak_from_this()] {
    if (const auto self = ifOpen(weak)) self->relayout();
  };
  card->menuProvider = [weak = weak_from_this()] {
    const auto self = ifOpen(weak);
    return self ? self->makeContextMenu() : nullptr;
  };
  card->snap = [weak = weak_from_this()](const Rect& proposed) {
    const auto self = ifOpen(weak);
    return self ? self->snapped(proposed) : proposed;
  };
}

Rect WindowMirrorHUDController::snapped(const Rect& proposed) const {
  const auto host = host_.lock();
  return host ? Rect{host->snap(proposed, *this).origin, proposed.size} : proposed;
}

Rect WindowMirrorHUDController::visibleArea() const {
  constexpr Rect areaWithoutScreen{{0, 0}, {1440, 900}};
  auto screen = panel_->screen();
  if (!screen) screen = platform::mainScreen();
  return screen ? screen->visibleFrame : areaWithoutScreen;
}

void WindowMirrorHUDController::positionInitially(int cascade) {
  panel_->setFrameOrigin(initialPanelOrigin(visibleArea(), panel_->frame().height(), cascade));
  views_.card()->setNeedsLayout();
}

void WindowMirrorHUDController::relayout() {
  views_.layOut(rolledUp_ ? PanelExtent::titleBarAlone : PanelExtent::whole);
  if (!rolledUp_) updateCaptureResolutionIfNeeded();
}

void WindowMirrorHUDController::show() {
  assert(platform::mainQueue().isCurrent());
  panel_->orderFrontRegardless();
  views_.card()->setNeedsLayout();
  startCapture();
  freshnessTimer_ =
      platform::scheduledTimer(freshnessInterval, /*repeats=*/true, [weak = weak_from_this()] {
        if (const auto self = ifOpen(weak)) self->tickFreshness();
      });
}

void WindowMirrorHUDController::close() {
  assert(platform::mainQueue().isCurrent());
  if (closed_.exchange(true)) return;
  if (freshnessTimer_) freshnessTimer_->invalidate();
  freshnessTimer_ = nullptr;
  if (keepAwake_) restoreParkedWindow();
  stopCapture();
  panel_->orderOut();
  panel_->close();
}

}  // namespace vistrel
