#include "platform/linux/qt/widgets/TitledWindow.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QWindow>
#include <chrono>
#include <utility>

namespace vistrel::platform::linux_desktop {

namespace {

Qt::WindowFlags flagsOfStyle(std::uint64_t styleMask) {
  Qt::WindowFlags flags =
      Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint;
  if ((styleMask & styleClosable) != 0) flags |= Qt::WindowCloseButtonHint;
  if ((styleMask & styleMiniaturizable) != 0) flags |= Qt::WindowMinimizeButtonHint;
  if ((styleMask & styleResizable) != 0) flags |= Qt::WindowMaximizeButtonHint;
  return flags;
}

/// The key equivalent of a key press; empty for keys that are none.
std::string keyEquivalent(const QKeyEvent& event) {
  const bool isReturn = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
  const bool isPlain = (event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
  return isReturn && isPlain ? "\r" : "";
}

/// How long the window stands still before it is drawn once more.
constexpr std::chrono::seconds rest{1};

}  // namespace

TitledWindow::TitledWindow(Window& window, const std::string& notice,
                           std::shared_ptr<PickEntry> pickEntry, Callbacks callbacks)
    : QMainWindow(nullptr, flagsOfStyle(window.styleMask())),
      window_(&window),
      callbacks_(std::move(callbacks)),
      widgets_(*new QWidget(this), notice, std::move(pickEntry)) {
  setCentralWidget(&widgets_.parent());
  // mutter 43.8 now and then overlooks what is drawn into a window, above all the first time.
  rest_.setSingleShot(true);
  rest_.setInterval(rest);
  QObject::connect(&rest_, &QTimer::timeout, this, [this] {
    isDrawnOnceMore_ = true;
    update();
  });
  create();
  QObject::connect(windowHandle(), &QWindow::screenChanged, this, [this] {
    if (window_ != nullptr) callbacks_.scaleChanged();
  });
}

void TitledWindow::setGeometry(const QRect& geometry) {
  if (windowHandle()->size() == size()) return QMainWindow::setGeometry(geometry);
  // Its scale has changed and its pixels have not. The widget believes that it is as large as
  // before in points: asked to be so, it would only move.
  windowHandle()->setGeometry(geometry);
}

void TitledWindow::moveEvent(QMoveEvent* /*event*/) {
  if (window_ != nullptr) callbacks_.placed();
}

void TitledWindow::resizeEvent(QResizeEvent* /*event*/) {
  if (window_ != nullptr) callbacks_.placed();
}

void TitledWindow::closeEvent(QCloseEvent* event) {
  event->accept();
  if (window_ != nullptr) callbacks_.closed();
}

void TitledWindow::keyPressEvent(QKeyEvent* event) {
  const std::string key = keyEquivalent(*event);
  const bool isTaken = window_ != nullptr && !key.empty() && window_->performKeyEquivalent(key);
  if (!isTaken) QMainWindow::keyPressEvent(event);
}

void TitledWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (window_ == nullptr) return;
  if (event->type() == QEvent::PaletteChange) widgets_.dress();
  if (event->type() == QEvent::WindowStateChange && !isMinimized()) callbacks_.restored();
}

void TitledWindow::showEvent(QShowEvent* event) {
  QMainWindow::showEvent(event);
  rest_.start();
}

bool TitledWindow::event(QEvent* event) {
  // Comes whenever something of it is to be drawn.
  if (event->type() == QEvent::UpdateRequest && !std::exchange(isDrawnOnceMore_, false)) {
    rest_.start();
  }
  return QMainWindow::event(event);
}

}  // namespace vistrel::platform::linux_desktop
