#include "platform/linux/qt/widgets/TitledPeer.h"

#include <QScreen>
#include <QWindow>
#include <utility>

#include "platform/linux/Trace.h"
#include "platform/linux/qt/space/QtConnection.h"
#include "platform/linux/qt/space/QtSpace.h"
#include "platform/linux/qt/space/RootPlace.h"
#include "platform/linux/qt/windows/Reach.h"

namespace vistrel::platform::linux_desktop {

namespace {

/// What a person can shrink a window to that names no minimum of its own: its controls do not run
/// into one another there.
constexpr QSize smallestUseful(400, 220);
constexpr int saveDelayMilliseconds = 300;
/// How long after the last change of its scale or of the screens a window has come to rest: a
/// person may be dragging it, and the manager moves it as well.
constexpr int restMilliseconds = 200;
/// After how many rests a window takes the size that it has after a change of its scale, if that is
/// still not the one that it asks for, or if the manager has not answered.
constexpr int mostSettlings = 5;

/// By its middle, as the toolkit has it. `frame` in global display space.
const LaidOutMonitor& monitorOf(const Rect& frame, const ScreenLayout& layout) {
  return layout.holding({{frame.midX(), frame.midY()}, {}});
}

Point middleOf(const QRect& pixels) {
  return {static_cast<double>(pixels.center().x()), static_cast<double>(pixels.center().y())};
}

}  // namespace

TitledPeer::TitledPeer(Window& window, std::shared_ptr<PeerHost> host, std::string notice)
    : HostedPeer(window, std::move(host)), notice_(std::move(notice)) {
  saving_.setSingleShot(true);
  saving_.setInterval(saveDelayMilliseconds);
  QObject::connect(&saving_, &QTimer::timeout, &saving_, [this] { writeFrame(); });
  settling_.setSingleShot(true);
  settling_.setInterval(restMilliseconds);
  QObject::connect(&settling_, &QTimer::timeout, &settling_, [this] { settle(); });
  update_.setSingleShot(true);
  QObject::connect(&update_, &QTimer::timeout, &update_, [this] { update(); });
  if (const auto& entry = this->host().pickEntry()) {
    entry->follow(update_, [this] { scheduleUpdate(ViewChange::appearance); });
  }
}

TitledPeer::~TitledPeer() { releaseNative(); }

Rect TitledPeer::frameRectForContentRect(const Rect& contentRect) const {
  Rect frame = contentRect;
  frame.size.height += host().mainMenu().barHeight();
  return frame;
}

Rect TitledPeer::contentRectForFrameRect(const Rect& frame) const {
  Rect contentRect = frame;
  contentRect.size.height -= host().mainMenu().barHeight();
  return contentRect;
}

void TitledPeer::frameDidChange(Redisplay /*redisplay*/, FrameChange /*change*/) {
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

void TitledPeer::miniaturize() {
  if (native_) native_->showMinimized();
}

void TitledPeer::close() { orderOut(); }

std::optional<Rect> TitledPeer::adoptAutosavedFrame(const std::string& name) {
  const auto saved = host().savedFrames().load(name);
  const QSizeF smallest = minimumSize();
  const bool isBelieved =
      saved && isCredible(*saved, {smallest.width(), smallest.height()}, screens());
  return isBelieved ? saved : std::nullopt;
}

bool TitledPeer::hasKeyboard() const { return native_ && native_->isActiveWindow(); }

// Taskbars keep it there, so a person can have the program back.
void TitledPeer::hideWithProgram() { host().isFoundByIcon() ? orderOut() : miniaturize(); }

void TitledPeer::showWithProgram() { show(); }

void TitledPeer::retire() { releaseNative(); }

void TitledPeer::makeNative() {
  native_.reset(new TitledWindow(window_, notice_, host().pickEntry(),
                                 {.placed = [this] { nativeWasPlaced(); },
                                  .closed = [this] { nativeWasClosed(); },
                                  .restored = [this] { host().unhide(); },
                                  .scaleChanged = [this] { scaleDidChange(); }}));
  native_->setWindowTitle(QString::fromStdString(window_.title()));
  host().mainMenu().fill(*native_->menuBar());
  place();
  native_->widgets().rebuild(*window_.contentView());
  native_->widgets().focusTable();
}

void TitledPeer::releaseNative() {
  saveFrame();
  settling_.stop();
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
  const auto layout = host().layout();
  const Rect frame = layout->flipped(window_.frame());
  const auto [geometry, pixels] =
      qtPlace(monitorOf(frame, *layout).toPixels(frame), *native_->screen());
  const QRect formerGeometry = askedGeometry();
  if (placed_.ask(pixels)) placeNative(*native_, formerGeometry, geometry, minimumSize());
}

QRect TitledPeer::askedGeometry() const {
  return QtScreen::of(*native_->screen()).fromPixels(pixelRect(placed_.current()));
}

QSize TitledPeer::minimumSize() const {
  const QSize content = wholePoints(window_.contentMinSize()).expandedTo(smallestUseful);
  return content + QSize(0, host().mainMenu().barHeight());
}

void TitledPeer::nativeWasPlaced() {
  if (!native_) return;  // while it is being made
  const QSize formerSize = placed_.current().size();
  if (placed_.isMovedTo(qtRect(placeOfNative()))) {
    trace(TraceTopic::manager, [this] {
      return "the picker has been moved to " + areaText(pixelRect(placed_.current()));
    });
    // Managers apply the new scale's bounds to the former size, and move and resize at different
    // times: until all has come to rest, no size is one that somebody wants.
    adoptPlace(/*keepingSize=*/settling_.isActive() || placed_.current().size() == formerSize);
    saveFrameSoon();
  }
  update();
}

PixelRect TitledPeer::placeOfNative() const {
  // Until it is on screen, the display server has not heard of its place.
  const auto onRoot = native_->windowHandle()->isExposed()
                          ? placeOnRoot(static_cast<xcb_window_t>(native_->winId()))
                          : std::nullopt;
  return onRoot ? *onRoot : QtScreen::of(*native_->screen()).toPixels(native_->geometry());
}

void TitledPeer::adoptPlace(bool keepingSize) {
  const auto layout = host().layout();
  const QRect& pixels = placed_.current();
  Rect frame = layout->at(middleOf(pixels)).toPoints(pixelRect(pixels));
  if (keepingSize) frame.size = window_.frame().size;
  window_.peerDidSetFrame(layout->flipped(frame));
}

void TitledPeer::scaleDidChange() {
  window_.peerDidChangeBackingProperties();
  settleSoon();
}

void TitledPeer::screensDidChange() {
  if (native_) settleSoon();
}

void TitledPeer::settleSoon() {
  settlingsLeft_ = mostSettlings;
  settling_.start();
}

void TitledPeer::settle() {
  settling_.start();  // the first answer may come while it asks
  const QRect former = placed_.current();
  const Size size = window_.frame().size;
  const auto layout = host().layout();
  const Point middle = middleOf(placed_.current());
  const LaidOutMonitor& monitor = layout->at(middle);
  Rect frame{monitor.toPoints(pixelRect(placed_.current())).origin, size};
  if (monitorOf(frame, *layout) != monitor) {
    // Its middle stays, by which the toolkit tells the screen: else it would change its scale
    // again.
    const Point there = monitor.toPoints(middle);
    frame.origin = {there.x - size.width / 2, there.y - size.height / 2};
  }
  window_.setFrame(broughtIntoReach(layout->flipped(frame), screens()), Redisplay::atOnce);
  const bool isSettled = placed_.current() == former && placed_.isAnswered();
  if (isSettled || --settlingsLeft_ == 0) settling_.stop();
}

void TitledPeer::nativeWasClosed() {
  saveFrame();
  window_.peerDidClose();
  host().unhide();
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
  if (saving_.isActive()) writeFrame();
}

void TitledPeer::writeFrame() {
  saving_.stop();
  host().savedFrames().save(window_.frameAutosaveName(), window_.frame());
}

}  // namespace vistrel::platform::linux_desktop
