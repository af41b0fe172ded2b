#include "platform/linux/qt/panel/PanelPeer.h"

#include <QGuiApplication>
#include <QScreen>
#include <QSurfaceFormat>
#include <QVariant>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <new>
#include <utility>

#include "platform/linux/Trace.h"
#include "platform/linux/qt/paint/ChromePainter.h"
#include "platform/linux/qt/panel/PersonsMove.h"
#include "platform/linux/qt/space/QtConnection.h"
#include "platform/linux/qt/space/QtSpace.h"
#include "platform/linux/qt/space/RootPlace.h"
#include "platform/linux/qt/windows/Reach.h"

namespace vistrel::platform::linux_desktop {

namespace {

/// Managers answer within milliseconds, on a busy machine later. One that takes longer is believed
/// too soon, until it does.
constexpr std::chrono::milliseconds longSilence{1500};
constexpr std::chrono::milliseconds longSilenceWhenBehind{6000};

constexpr std::chrono::milliseconds atOnce{0};
/// How often memory is looked for where there was none.
constexpr std::chrono::milliseconds lackingLook{500};

/// Managers tell windows of one title apart by a number, "Vistrel <2>".
QString nativeTitle(const Window& window) {
  const std::string title =
      window.title().empty() ? window.contentView()->accessibilityLabel() : window.title();
  if (title.empty()) return QStringLiteral("Vistrel");
  return QStringLiteral("Vistrel — ") + QString::fromStdString(title);
}

}  // namespace

PanelPeer::PanelPeer(Window& window, std::shared_ptr<PeerHost> host, Providers providers)
    : HostedPeer(window, std::move(host)), providers_(providers) {
  repaint_.setSingleShot(true);
  QObject::connect(&repaint_, &QTimer::timeout, &repaint_, [this] { repaint(); });
  lastAnswer_.setSingleShot(true);
  QObject::connect(&lastAnswer_, &QTimer::timeout, &lastAnswer_, [this] { believeDesktop(); });
}

PanelPeer::~PanelPeer() { releaseNative(); }

void PanelPeer::frameDidChange(Redisplay /*redisplay*/, FrameChange change) {
  place(change == FrameChange::animated ? Arrival::rolling : Arrival::atOnce);
}

void PanelPeer::propertiesDidChange() {
  if (!native_) return;
  native_->setTitle(nativeTitle(window_));
  bindResizing(*native_, wholePoints(window_.contentMinSize()), askedGeometry().size());
}

void PanelPeer::contentViewDidChange() { scheduleRepaint(); }

void PanelPeer::viewDidChange(View& view, ViewChange change) {
  if (change != ViewChange::layerContents) return scheduleRepaint();
  if (!surface_ || view.isHiddenOrHasHiddenAncestor()) return;
  const auto& contents = view.layer()->contents();
  const bool hasOpening = view.layer() == contentsLayer_;
  // At once also where it goes: until the repaint, frames would go on coming into the panel.
  if (hasOpening) showContents(contents);
  if (!hasOpening || !contents) scheduleRepaint();
}

void PanelPeer::orderFrontRegardless() {
  if (!host().isOpen()) return;
  if (!native_) makeNative();
  const auto id = static_cast<std::uint32_t>(native_->winId());
  if (!native_->isVisible()) {
    providers_.windows.makeFloating(id);
    repaint();
    native_->show();
    isAppearing_ = true;
    awaitLastAnswer();
  }
  providers_.activation.raise(id);
}

void PanelPeer::hasAppeared() {
  if (!std::exchange(isAppearing_, false)) return;
  // mutter 43.8 puts a new window that does not get the keyboard below older ones.
  providers_.activation.raise(static_cast<std::uint32_t>(native_->winId()));
  insistsOnPlace_ = true;
  if (const auto pixels = placeOfNative()) placed_.hear(qtRect(*pixels));
  insistOnPlace();
}

void PanelPeer::insistOnPlace() {
  if (!insistsOnPlace_ || !placed_.isRefused()) return;
  insistsOnPlace_ = false;
  ask();
}

void PanelPeer::makeKeyAndOrderFront() { orderFrontRegardless(); }

void PanelPeer::orderOut() {
  if (!native_) return;
  native_->hide();
  endRoll();
}

// Managers minimise what their taskbars list, which a panel is kept out of.
void PanelPeer::miniaturize() {}

void PanelPeer::close() { releaseNative(); }

std::optional<Rect> PanelPeer::adoptAutosavedFrame(const std::string& /*name*/) { return {}; }

// It never takes the focus.
bool PanelPeer::hasKeyboard() const { return false; }

void PanelPeer::hideWithProgram() { orderOut(); }

void PanelPeer::showWithProgram() { orderFrontRegardless(); }

void PanelPeer::retire() { releaseNative(); }

void PanelPeer::makeNative() {
  native_.reset(
      new PanelWindow(window_, {.placed = [this] { nativeWasPlaced(); },
                                .released = [this] { place(); },
                                .exposed = [this] { hasAppeared(); },
                                .entered = [this] { pointerEntered(); },
                                .moved = [this] { pointerIsOver(true); },
                                .left = [this] { pointerIsOver(false); },
                                .menuWanted =
                                    [this](const QPoint& onDesktop, std::function<void()> show) {
                                      prepareForMenu(onDesktop, std::move(show));
                                    },
                                .menuClosed = [this] { menuHasClosed(); },
                                .situation = [this] { return situationOfSource(); }}));
  QSurfaceFormat format;
  format.setAlphaBufferSize(8);
  native_->setFormat(format);
  native_->setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                    Qt::WindowDoesNotAcceptFocus);
  // Qt 6.4.2 then tells the manager a user time of 0: not to be activated when it is mapped.
  native_->setProperty("_q_showWithoutActivating", QVariant(true));
  native_->setTitle(nativeTitle(window_));
  place();
  native_->create();
  // The surface draws it on another connection.
  syncQt();
  surface_ = providers_.windows.makeSurface(static_cast<std::uint32_t>(native_->winId()));
}

void PanelPeer::pointerEntered() {
  // When a menu closes, XWayland 22.1.9 takes the pointer to be over what lay below the menu,
  // though it is in a native window by then, and never tells that it is not. Its motion can be
  // believed.
  if (!providers_.mayHaveForeignWindows) pointerIsOver(true);
}

void PanelPeer::pointerIsOver(bool isOver) {
  if (isOver == std::exchange(takesMenuKeys_, isOver)) return;
  // The panel never has the keyboard: the pointer says that it is the one that is meant.
  if (isOver) {
    providers_.menuKeys.take([this] { native_->openContextMenu(); });
  } else {
    providers_.menuKeys.release();
  }
}

void PanelPeer::prepareForMenu(const QPoint& onDesktop, std::function<void()> show) {
  if (!providers_.mayHaveForeignWindows || QGuiApplication::focusWindow() != nullptr) return show();
  keyboardHolder_.reset(
      new KeyboardHolder(providers_.windows, providers_.activation, onDesktop, std::move(show)));
}

void PanelPeer::menuHasClosed() {
  if (!keyboardHolder_) return;
  keyboardHolder_.reset();
  // What was chosen may be about who has the keyboard, and is asked for on another connection.
  syncQt();
}

SourceSituation PanelPeer::situationOfSource() const {
  const auto source = surface_ ? surface_->source() : std::nullopt;
  return source ? providers_.situations.of(*source) : SourceSituation::ordinary;
}

void PanelPeer::releaseNative() {
  if (native_) pointerIsOver(false);
  keyboardHolder_.reset();
  roll_.stop();
  if (surface_) surface_->detach();
  surface_.reset();
  native_.reset();
  wanted_ = {};
  placed_ = {};
  monitor_ = {};
  toldBackingScale_ = 0;
  shownSize_ = {};
  contentsLayer_ = nullptr;
  shownContents_.reset();
  repaint_.stop();
  lastAnswer_.stop();
}

void PanelPeer::place(Arrival arrival) {
  if (!native_) return;
  const auto layout = host().layout();
  const Rect frame = layout->flipped(window_.frame());
  // A panel that is dragged belongs to the monitor under the pointer, whichever holds most of it:
  // else it would change its scale while the pointer is elsewhere, and slip from under it.
  const auto pointer = native_->heldAt();
  placeOn(pointer ? layout->at(*pointer) : layout->holding(frame), frame, arrival);
}

void PanelPeer::placeOn(const LaidOutMonitor& monitor, const Rect& frame, Arrival arrival) {
  belongTo(monitor);
  const QtPlace wanted = qtPlace(monitor.toPixels(frame), *native_->screen());
  const QRect formerlyDue = due();
  if (std::exchange(wanted_, wanted.pixels) != wanted.pixels) {
    endRoll();
    if (arrival == Arrival::rolling) roll(formerlyDue);
  }
  if (due().size() != formerlyDue.size()) scheduleRepaint();
  room() == wanted.pixels ? askFor(wanted) : ask();
}

QRect PanelPeer::due() const {
  QRect due = wanted_;
  if (roll_.isRunning()) due.setHeight(roll_.height());
  return due;
}

void PanelPeer::roll(const QRect& from) {
  const auto chrome = surface_ ? surface_->chrome() : nullptr;
  const bool isShown = native_->isVisible() && chrome && chrome->width == from.width();
  if (!isShown || from.topLeft() != wanted_.topLeft() || from.width() != wanted_.width()) return;
  unrolled_ = chrome;
  roll_.start(from.height(), wanted_.height());
  scheduleRepaint();
}

void PanelPeer::endRoll() {
  if (!roll_.isRunning()) return;
  roll_.stop();
  unrolled_.reset();
  scheduleRepaint();
}

void PanelPeer::showRolled() {
  ask();
  if (roll_.isRunning()) return showChrome(topOf(*unrolled_, roll_.height()));
  unrolled_.reset();
  repaint();
}

QRect PanelPeer::room() const {
  // For what the window shows and for what it will show, so that neither is ever cut: it grows
  // before it shows more, and shrinks after it shows less.
  return {due().topLeft(), due().size().expandedTo(shownSize_)};
}

void PanelPeer::ask() { askFor(qtPlace(pixelRect(room()), *native_->screen())); }

void PanelPeer::askFor(const QtPlace& place) {
  const QRect formerGeometry = askedGeometry();
  const QSize formerSize = placed_.current().size();
  if (!placed_.ask(place.pixels)) return;
  awaitLastAnswer();
  const bool isMoveAlone = place.pixels.size() == formerSize && native_->isVisible();
  if (providers_.confinesWindows && isMoveAlone) {
    return moveAsPerson(static_cast<xcb_window_t>(native_->winId()), place.pixels.topLeft());
  }
  placeNative(*native_, formerGeometry, place.geometry, wholePoints(window_.contentMinSize()));
}

QRect PanelPeer::askedGeometry() const {
  return QtScreen::of(*native_->screen()).fromPixels(pixelRect(placed_.current()));
}

void PanelPeer::belongTo(const LaidOutMonitor& monitor) {
  const bool isRescaled = monitor.monitor.pixelsPerPoint != monitor_.monitor.pixelsPerPoint;
  monitor_ = monitor;
  if (isRescaled) {
    native_->setPixelsPerPoint(monitor.monitor.pixelsPerPoint);
    scheduleRepaint();
  }
  const double backingScale = window_.backingScaleFactor();
  if (std::exchange(toldBackingScale_, backingScale) == backingScale) return;
  window_.peerDidChangeBackingProperties();
}

std::optional<PixelRect> PanelPeer::placeOfNative() const {
  if (native_->handle() == nullptr) return std::nullopt;  // while it is being made
  return placeOnRoot(static_cast<xcb_window_t>(native_->winId()));
}

void PanelPeer::nativeWasPlaced() {
  const auto pixels = placeOfNative();
  if (!pixels) return;
  const QRect place = qtRect(*pixels);
  if (lastAnswer_.isActive()) {  // an answer to an older request must not undo a newer one
    placed_.hear(place);
    if (placed_.isElsewhere()) insistOnPlace();
    return awaitLastAnswer();
  }
  if (!placed_.isMovedTo(place)) return;
  trace(TraceTopic::manager, [&] { return "a panel has been moved to " + areaText(*pixels); });
  adoptPlace(place);
}

void PanelPeer::awaitLastAnswer() {
  lastAnswer_.start(placed_.isBehind() ? longSilenceWhenBehind : longSilence);
}

void PanelPeer::believeDesktop() {
  insistsOnPlace_ = false;
  if (wanted_ != placed_.current()) return;  // the last word is not said yet
  // The last news may be of a moment at which kwin_x11 5.27.5 was still putting its frame around
  // the window; the toolkit tells nothing where that has left it in its place.
  if (const auto pixels = placeOfNative()) placed_.hear(qtRect(*pixels));
  if (!placed_.isRefused()) return;
  trace(TraceTopic::manager, [this] {
    return "a panel is not where it was asked to be but at " +
           areaText(pixelRect(placed_.current()));
  });
  adoptPlace(placed_.current());
}

void PanelPeer::adoptPlace(const QRect& place) {
  endRoll();
  const QSize formerSize = std::exchange(wanted_, place).size();
  shownSize_ = shownSize_.boundedTo(place.size());
  const auto layout = host().layout();
  // Whoever moves it, it takes another monitor's scale only when it has left its own altogether:
  // its size changes with the scale, and must not carry it back.
  const bool isOnItsOwn = qtRect(monitor_.monitor.pixels).intersects(place);
  const LaidOutMonitor monitor = isOnItsOwn ? monitor_ : layout->holding(pixelRect(place));
  Rect frame = monitor.toPoints(pixelRect(place));
  if (place.size() == formerSize) frame.size = window_.frame().size;
  scheduleRepaint();
  window_.peerDidSetFrame(layout->flipped(frame));
  if (monitor == monitor_) {
    belongTo(monitor);
  } else {
    placeOn(monitor, frame);
  }
  bindResizing(*native_, wholePoints(window_.contentMinSize()), askedGeometry().size());
}

void PanelPeer::screensDidChange() {
  if (!native_) return;
  const auto layout = host().layout();
  const PixelRect pixels = pixelRect(placed_.current());
  const Rect frame{layout->toPoints(pixels).origin, window_.frame().size};
  window_.peerDidSetFrame(broughtIntoReach(layout->flipped(frame), screens()));
  place();
}

void PanelPeer::scheduleRepaint() {
  if (native_) repaint_.start(atOnce);
}

void PanelPeer::repaint() {
  repaint_.stop();
  attempt(&PanelPeer::paintAll);
}

void PanelPeer::attempt(void (PanelPeer::*painting)()) {
  try {
    (this->*painting)();
  } catch (const std::bad_alloc&) {
    endRoll();
    repaint_.start(lackingLook);
  }
}

void PanelPeer::paintAll() {
  window_.layoutIfNeeded();
  native_->reportToScreenReaders();
  // What is rolled up is what was there before.
  if (roll_.isRunning() && roll_.isRollingUp()) return showRolled();
  auto painted = paintChrome(*window_.contentView(), wanted_.width(), wanted_.height(),
                             monitor_.monitor.pixelsPerPoint);
  if (roll_.isRunning()) {
    unrolled_ = std::make_shared<const PanelChrome>(std::move(painted.chrome));
    showRolled();
  } else {
    showChrome(std::move(painted.chrome));
  }
  contentsLayer_ = painted.contentsLayer;
  if (contentsLayer_ != nullptr) showContents(contentsLayer_->contents());
}

void PanelPeer::showChrome(PanelChrome chrome) {
  const QSize size(chrome.width, chrome.height);
  surface_->setChrome(std::move(chrome), [this, size] {
    shownSize_ = size;
    ask();
  });
}

void PanelPeer::showContents(std::shared_ptr<const Image> image) {
  if (image == shownContents_) return;
  shownContents_ = image;
  surface_->setContents(std::move(image));
}

}  // namespace vistrel::platform::linux_desktop
