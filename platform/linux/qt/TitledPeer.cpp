#include "platform/linux/qt/TitledPeer.h"

#include <QScreen>
#include <utility>

#include "platform/linux/qt/Reach.h"
#include "platform/linux/qt/RootPlace.h"
#include "platform/linux/qt/ScreenList.h"
#include "platform/linux/qt/ToolkitSpace.h"

namespace vistrel::platform::linux_desktop {

namespace {

/// What a person can shrink a window to that names no minimum of its own: its controls do not run
/// into one another there.
constexpr QSize smallestUseful(400, 220);
constexpr int saveDelayMilliseconds = 300;

}  // namespace

TitledPeer::TitledPeer(Window& window, std::shared_ptr<PeerHost> host)
    : HostedPeer(std::move(host)), window_(window) {
  saving_.setSingleShot(true);
  saving_.setInterval(saveDelayMilliseconds);
  QObject::connect(&saving_, &QTimer::timeout, &saving_, [this] { saveFrame(); });
  update_.setSingleShot(true);
  QObject::connect(&update_, &QTimer::timeout, &update_, [this] { update(); });
}

TitledPeer::~TitledPeer() { releaseNative(); }

void TitledPeer::frameDidChange(bool /*display*/, bool /*animate*/) {
  place();
  saveFrameSoon();
}

void TitledPeer::propertiesDidChange() {
  if (!native_) return;
  native_->setWindowTitle(QString::fromStdString(window_.title()));
  bindResizing(*native_, minimumSize(), askedGeometry().size());
}

void TitledPeer::contentViewDidChange() { scheduleUpdate(ViewChange::hierarchy); }

void TitledPeer::viewDidChange(View& /*view*/, ViewChange change) { scheduleUpdate(change); }

void TitledPeer::orderFrontRegardless() {
  if (!host().isOpen()) return;
  show();
  native_->raise();
}

void TitledPeer::makeKeyAndOrderFront() {
  if (!host().isOpen()) return;
  show();
  native_->raise();
  native_->activateWindow();
}

void TitledPeer::orderOut() {
  if (native_) native_->hide();
}

void TitledPeer::close() { orderOut(); }

std::optional<Rect> TitledPeer::adoptAutosavedFrame(const std::string& name) {
  const auto saved = host().savedFrames().load(name);
  return saved && isReachable(*saved, screens()) ? saved : std::nullopt;
}

void TitledPeer::retire() { releaseNative(); }

void TitledPeer::makeNative() {
  native_.reset(new TitledWindow(
      window_, {.placed = [this] { nativeWasPlaced(); },
                .closed = [this] { nativeWasClosed(); },
                .scaleChanged = [this] { window_.peerDidChangeBackingProperties(); }}));
  native_->setWindowTitle(QString::fromStdString(window_.title()));
  place();
  native_->widgets().rebuild(*window_.contentView());
  native_->widgets().focusTable();
}

void TitledPeer::releaseNative() {
  if (saving_.isActive()) saveFrame();
  update_.stop();
  native_.reset();
  placed_ = {};
}

void TitledPeer::show() {
  if (!native_) makeNative();
  update();
  if (native_->isMinimized()) return native_->showNormal();
  if (!native_->isVisible()) native_->widgets().focusTable();
  native_->show();
}

void TitledPeer::place() {
  if (!native_) return;
  const ScreenLayout layout = ScreenList::layout();
  const Rect frame = layout.flipped(window_.frame());
  const auto [geometry, pixels] =
      toolkitPlace(layout.holding(frame).toPixels(frame), *native_->screen());
  const QRect formerGeometry = askedGeometry();
  if (placed_.ask(pixels)) placeNative(*native_, formerGeometry, geometry, minimumSize());
}

QRect TitledPeer::askedGeometry() const {
  return ToolkitScreen::of(*native_->screen()).fromPixels(pixelRect(placed_.current()));
}

QSize TitledPeer::minimumSize() const {
  return wholePoints(window_.contentMinSize()).expandedTo(smallestUseful);
}

void TitledPeer::nativeWasPlaced() {
  if (!native_) return;  // while it is being made
  const auto pixels = placeOnRoot(static_cast<xcb_window_t>(native_->winId()));
  if (pixels && placed_.isMovedTo(toolkitRect(*pixels))) {
    const ScreenLayout layout = ScreenList::layout();
    // The widgets are as large as the toolkit says.
    const Rect frame{
        layout.toPoints(*pixels).origin,
        {static_cast<double>(native_->width()), static_cast<double>(native_->height())}};
    window_.peerDidSetFrame(layout.flipped(frame));
    saveFrameSoon();
  }
  update();
}

void TitledPeer::screensDidChange() {
  if (!native_) return;
  const ScreenLayout layout = ScreenList::layout();
  const PixelRect pixels = pixelRect(placed_.current());
  const Rect frame{layout.toPoints(pixels).origin, window_.frame().size};
  window_.peerDidSetFrame(broughtIntoReach(layout.flipped(frame), screens()));
  place();
}

void TitledPeer::nativeWasClosed() {
  if (saving_.isActive()) saveFrame();
  window_.peerDidClose();
}

void TitledPeer::scheduleUpdate(ViewChange change) {
  pending_.hierarchy |= change == ViewChange::hierarchy;
  pending_.appearance |= change == ViewChange::appearance;
  pending_.rows |= change == ViewChange::rows;
  if (native_) update_.start();
}

void TitledPeer::update() {
  update_.stop();
  const auto due = std::exchange(pending_, {});
  window_.layoutIfNeeded();
  WidgetTree& widgets = native_->widgets();
  if (due.hierarchy) return widgets.rebuild(*window_.contentView());
  if (due.appearance) widgets.dress();
  if (due.rows) widgets.reloadRows();
  widgets.place();
}

void TitledPeer::saveFrameSoon() {
  if (!window_.frameAutosaveName().empty() && host().isOpen()) saving_.start();
}

void TitledPeer::saveFrame() {
  saving_.stop();
  host().savedFrames().save(window_.frameAutosaveName(), window_.frame());
}

}  // namespace vistrel::platform::linux_desktop
