#include "platform/linux/qt/panel/PanelWindow.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QStyleHints>
#include <utility>

#include "platform/linux/qt/menus/ActiveWindow.h"
#include "platform/linux/qt/menus/ShownMenu.h"
#include "platform/linux/qt/panel/PanelAccessible.h"
#include "platform/linux/qt/panel/SituationText.h"
#include "platform/linux/qt/space/Pointer.h"
#include "platform/linux/qt/space/QtSpace.h"
#include "platform/linux/qt/windows/ScreenReaders.h"

namespace vistrel::platform::linux_desktop {

namespace {

ClickCounter::Limits clickLimits() {
  const QStyleHints& hints = *QGuiApplication::styleHints();
  return {static_cast<std::uint64_t>(hints.mouseDoubleClickInterval()),
          static_cast<double>(hints.mouseDoubleClickDistance())};
}

Qt::CursorShape shapeOf(Cursor cursor) {
  return cursor == Cursor::crosshair ? Qt::CrossCursor : Qt::ArrowCursor;
}

/// `ModifierFlags`: Control stands in for Command.
std::uint64_t modifierFlags(Qt::KeyboardModifiers modifiers) {
  std::uint64_t flags = modifierNone;
  if (modifiers.testFlag(Qt::ShiftModifier)) flags |= modifierShift;
  if (modifiers.testFlag(Qt::AltModifier)) flags |= modifierOption;
  if (modifiers.testFlag(Qt::ControlModifier)) flags |= modifierCommand;
  if (modifiers.testFlag(Qt::MetaModifier)) flags |= modifierControl;
  return flags;
}

}  // namespace

PanelWindow::PanelWindow(platform::Window& window, Callbacks callbacks)
    : window_(&window), callbacks_(std::move(callbacks)) {}

void PanelWindow::abandon() {
  announce(QAccessible::ObjectDestroyed);
  window_ = nullptr;
}

std::string PanelWindow::situationText() const {
  return window_ == nullptr ? "" : linux_desktop::situationText(callbacks_.situation());
}

void PanelWindow::reportToScreenReaders() {
  if (auto* accessible = heardAccessible<PanelAccessible>(*this)) accessible->reportChanges();
}

QAccessibleInterface* PanelWindow::accessibleRoot() const {
  return QAccessible::queryAccessibleInterface(const_cast<PanelWindow*>(this));
}

void PanelWindow::showEvent(QShowEvent* /*event*/) {
  announce(QAccessible::ObjectCreated);
  announce(QAccessible::ObjectShow);
}

void PanelWindow::hideEvent(QHideEvent* /*event*/) { announce(QAccessible::ObjectHide); }

void PanelWindow::exposeEvent(QExposeEvent* /*event*/) {
  if (window_ != nullptr && isExposed()) callbacks_.exposed();
}

void PanelWindow::mousePressEvent(QMouseEvent* event) {
  tip_.hide();
  if (event->button() == Qt::RightButton) {
    return openContextMenu(event->position(), event->globalPosition());
  }
  if (event->button() != Qt::LeftButton) return;
  const QPointF position = event->globalPosition();
  clicks_.press({position.x(), position.y()}, event->timestamp(), clickLimits());
  send(EventType::leftMouseDown, *event);
}

void PanelWindow::mouseMoveEvent(QMouseEvent* event) {
  if (event->buttons().testFlag(Qt::LeftButton)) return send(EventType::leftMouseDragged, *event);
  if (event->buttons() == Qt::NoButton) hover(*event);
}

void PanelWindow::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  send(EventType::leftMouseUp, *event);
  heldAt_.reset();
  if (window_ != nullptr) callbacks_.released();
}

void PanelWindow::moveEvent(QMoveEvent* /*event*/) {
  if (window_ != nullptr) callbacks_.placed();
}

void PanelWindow::resizeEvent(QResizeEvent* /*event*/) {
  if (window_ != nullptr) callbacks_.placed();
}

bool PanelWindow::event(QEvent* event) {
  if (event->type() == QEvent::Leave) tip_.hide();
  if (event->type() == QEvent::Enter && window_ != nullptr) callbacks_.entered();
  if (event->type() == QEvent::Leave && window_ != nullptr) callbacks_.left();
  if (event->type() == QEvent::Close) {  // a panel is closed by its own controls alone
    event->ignore();
    return true;
  }
  return QWindow::event(event);
}

void PanelWindow::announce(QAccessible::Event event) {
  auto* accessible = heardAccessible<PanelAccessible>(*this);
  if (accessible != nullptr && accessible->isValid()) report(*accessible, event);
}

void PanelWindow::send(EventType type, const QMouseEvent& event) {
  if (window_ == nullptr) return;
  const Point pixel = pixelOf(event.globalPosition(), QtScreen::of(*screen()), qtScreens());
  const DispatchedPosition dispatched(pixel);
  heldAt_ = pixel;
  window_->sendEvent({.type = type,
                      .locationInWindow = locationInWindow(event.position()),
                      .modifierFlags = modifierFlags(event.modifiers()),
                      .clickCount = clicks_.count()});
}

void PanelWindow::openContextMenu() {
  const QPointF onDesktop = QCursor::pos();
  openContextMenu(mapFromGlobal(onDesktop), onDesktop);
}

void PanelWindow::openContextMenu(const QPointF& position, const QPointF& onDesktop) {
  if (window_ == nullptr) return;
  const auto menu = window_->menuForEvent(
      {.type = EventType::rightMouseDown, .locationInWindow = locationInWindow(position)});
  if (!menu) return;
  onceKeyboardIsKnownToHaveLeft(*this, [this, menu, onDesktop] {
    if (window_ == nullptr) return;
    callbacks_.menuWanted(onDesktop.toPoint(),
                          [this, menu, onDesktop] { showMenu(menu, onDesktop); });
  });
}

void PanelWindow::showMenu(const std::shared_ptr<Menu>& menu, const QPointF& onDesktop) {
  if (window_ == nullptr) return;
  auto* const shown = new ShownMenu(menu);
  shown->setAttribute(Qt::WA_DeleteOnClose);
  shown->winId();  // it has no window before
  shown->windowHandle()->setTransientParent(this);
  QObject::connect(shown, &QMenu::aboutToHide, this, [this] {
    if (window_ != nullptr) callbacks_.menuClosed();
  });
  // A panel that goes takes its menu with it.
  QObject::connect(this, &QWindow::visibleChanged, shown, &QWidget::close);
  shown->popup(onDesktop.toPoint());
}

void PanelWindow::hover(const QMouseEvent& event) {
  if (window_ == nullptr) return;
  const Point location = locationInWindow(event.position());
  const Qt::CursorShape shape = shapeOf(window_->cursorAt(location));
  if (cursor().shape() != shape) setCursor(shape);
  tip_.pointerMoved(event.globalPosition().toPoint(), window_->toolTipAt(location));
  callbacks_.moved();
}

Point PanelWindow::locationInWindow(const QPointF& qtPosition) const {
  const QPointF position = qtPosition * devicePixelRatio() / pixelsPerPoint_;
  return {position.x(), window_->contentView()->frame().height() - position.y()};
}

}  // namespace vistrel::platform::linux_desktop
