#include "mirror/WindowMirrorHUDController.h"

#include <cassert>
#include <utility>

#include "mirror/Freshness.h"
#include "mirror/LiveDotColors.h"
#include "platform/Screen.h"

namespace vistrel {

using platform::AccessibilityRole;
using platform::Color;
using platform::Font;
using platform::FontWeight;
using platform::Rect;
using platform::Size;

namespace {

std::int32_t processID(const platform::ShareableWindow& window) {
  return window.owningApplication ? window.owningApplication->processID : -1;
}

std::shared_ptr<MirrorPanel> makePanel(Size size) {
  auto panel = platform::makeOwnedByMain<MirrorPanel>(
      Rect{{0, 0}, size},
      platform::styleBorderless | platform::styleResizable | platform::styleNonactivatingPanel,
      platform::BackingStore::buffered, /*defer=*/false);
  panel->setFloatingPanel(true);
  panel->setBecomesKeyOnlyIfNeeded(true);
  panel->setLevel(platform::levelStatusBar);
  panel->setCollectionBehavior(platform::behaviorCanJoinAllSpaces |
                               platform::behaviorFullScreenAuxiliary);
  panel->setHidesOnDeactivate(false);
  panel->setOpaque(false);
  panel->setBackgroundColor(Color::clear());
  panel->setHasShadow(true);
  panel->setReleasedWhenClosed(false);
  panel->setAppearance(platform::Appearance::darkAqua);
  panel->setContentMinSize(panelMinSize);
  return panel;
}

}  // namespace

std::shared_ptr<WindowMirrorHUDController> WindowMirrorHUDController::make(
    const platform::WindowRecord& window, int cascade, OnClosed onClosed,
    std::weak_ptr<MirrorHost> host) {
  auto controller = platform::ownedByMain(
      new WindowMirrorHUDController(*window, std::move(onClosed), std::move(host)));
  controller->buildUI();
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
      panel_(makePanel(initialPanelSize(sourcePointSize_))),
      card_(std::make_shared<MirrorCardView>()),
      titleBar_(std::make_shared<platform::View>()),
      brandIcon_(std::make_shared<platform::ImageView>()),
      titleLabel_(std::make_shared<platform::Label>()),
      liveDot_(std::make_shared<platform::View>()),
      closeButton_(std::make_shared<platform::Button>()),
      statusLabel_(std::make_shared<platform::Label>()),
      content_(std::make_shared<MirrorContentView>()),
      grip_(std::make_shared<MirrorResizeGrip>()),
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

void WindowMirrorHUDController::buildUI() {
  buildCard();
  panel_->setContentView(card_);
  content_->setWantsLayer(true);
  content_->setAccessibilityRole(AccessibilityRole::image);
  content_->setAccessibilityLabel(displayName());
  card_->addSubview(content_);
  buildTitleBar();
  buildStatusLabel();
  card_->addSubview(grip_);
}

void WindowMirrorHUDController::buildCard() {
  card_->setWantsLayer(true);
  card_->layer()->setCornerRadius(10);
  card_->layer()->setMasksToBounds(true);
  card_->layer()->setBorderWidth(1);
  card_->layer()->setBorderColor(Color::white(0.18));
  card_->layer()->setBackgroundColor(Color::black());
  card_->setAccessibilityLabel(displayName());
  setCardCallbacks();
}

void WindowMirrorHUDController::setCardCallbacks() {
  card_->onDoubleClick = [weak = weak_from_this()] {
    if (const auto self = ifOpen(weak)) self->toggleRollUp();
  };
  card_->onLayout = [weak = weak_from_this()] {
    if (const auto self = ifOpen(weak)) self->relayout();
  };
  card_->menuProvider = [weak = weak_from_this()] {
    const auto self = ifOpen(weak);
    return self ? self->makeContextMenu() : nullptr;
  };
  card_->snap = [weak = weak_from_this()](const Rect& proposed) {
    const auto self = ifOpen(weak);
    return self ? self->snapped(proposed) : proposed;
  };
}

Rect WindowMirrorHUDController::snapped(const Rect& proposed) const {
  const auto host = host_.lock();
  return host ? Rect{host->snap(proposed, *this).origin, proposed.size} : proposed;
}

void WindowMirrorHUDController::buildTitleBar() {
  titleBar_->setWantsLayer(true);
  titleBar_->layer()->setBackgroundColor(Color::black(0.55));
  card_->addSubview(titleBar_);

  brandIcon_->setImage({.name = "rectangle.on.rectangle.angled",
                        .accessibilityDescription = "Vistrel",
                        .pointSize = 13,
                        .weight = FontWeight::semibold});
  brandIcon_->setContentTintColor(Color::srgb(0.4, 0.78, 1.0));
  brandIcon_->setImageScaling(platform::ImageScaling::proportionallyDown);
  brandIcon_->setToolTip("Vistrel — live window mirror");
  titleBar_->addSubview(brandIcon_);

  liveDot_->setWantsLayer(true);
  liveDot_->layer()->setCornerRadius(4);
  liveDot_->setAccessibilityRole(AccessibilityRole::image);
  setLiveDot(liveState);
  titleBar_->addSubview(liveDot_);

  titleLabel_->setFont(Font{11, FontWeight::semibold});
  titleLabel_->setTextColor(Color::white());
  titleLabel_->setLineBreakMode(platform::LineBreakMode::truncatingTail);
  titleLabel_->setStringValue(displayName());
  titleLabel_->setToolTip(displayName());
  titleBar_->addSubview(titleLabel_);

  closeButton_->setBordered(false);
  closeButton_->setAttributedTitle(
      "✕", {.font = Font{12, FontWeight::bold}, .color = Color::white(0.75)});
  closeButton_->setAccessibilityLabel("Close");
  closeButton_->setAction(
      {"closeClicked", weak_from_this(), &WindowMirrorHUDController::closeClicked});
  titleBar_->addSubview(closeButton_);
}

void WindowMirrorHUDController::buildStatusLabel() {
  statusLabel_->setFont(Font{11, FontWeight::regular});
  statusLabel_->setTextColor(Color::white(0.85));
  statusLabel_->setAlignment(platform::TextAlignment::center);
  statusLabel_->setLineBreakMode(platform::LineBreakMode::wordWrapping);
  statusLabel_->setMaximumNumberOfLines(3);
  statusLabel_->setHidden(true);
  statusLabel_->setAccessibilityRole(AccessibilityRole::status);
  card_->addSubview(statusLabel_);
}

Rect WindowMirrorHUDController::visibleArea() const {
  constexpr Rect areaWithoutScreen{{0, 0}, {1440, 900}};
  auto screen = panel_->screen();
  if (!screen) screen = platform::mainScreen();
  return screen ? screen->visibleFrame : areaWithoutScreen;
}

void WindowMirrorHUDController::positionInitially(int cascade) {
  panel_->setFrameOrigin(initialPanelOrigin(visibleArea(), panel_->frame().height(), cascade));
  card_->setNeedsLayout();
}

void WindowMirrorHUDController::relayout() {
  const PanelLayout layout = panelLayout(card_->bounds().size);
  relayoutTitleBar(layout);
  content_->setHidden(rolledUp_);
  grip_->setHidden(rolledUp_);
  if (rolledUp_) {
    statusLabel_->setHidden(true);
    return;
  }
  content_->setFrame(layout.content);
  statusLabel_->setFrame(layout.statusLabel);
  grip_->setFrame(layout.grip);
  updateCaptureResolutionIfNeeded();
}

void WindowMirrorHUDController::relayoutTitleBar(const PanelLayout& layout) {
  titleBar_->setFrame(layout.titleBar);
  brandIcon_->setFrame(layout.brandIcon);
  liveDot_->setFrame(layout.liveDot);
  closeButton_->setFrame(layout.closeButton);
  titleLabel_->setFrame(layout.titleLabel);
}

void WindowMirrorHUDController::setLiveDot(const LiveDotState& state) {
  liveDot_->layer()->setBackgroundColor(state.color);
  liveDot_->setAccessibilityLabel(state.accessibilityLabel);
}

void WindowMirrorHUDController::show() {
  assert(platform::mainQueue().isCurrent());
  panel_->orderFrontRegardless();
  card_->setNeedsLayout();
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
