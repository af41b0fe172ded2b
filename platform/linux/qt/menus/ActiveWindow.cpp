#include "platform/linux/qt/menus/ActiveWindow.h"

#include <QApplication>
#include <QTimer>
#include <QWidget>
#include <optional>
#include <utility>

#include "platform/linux/XcbRequests.h"
#include "platform/linux/qt/space/QtConnection.h"

namespace vistrel::platform::linux_desktop {

namespace {

constexpr int millisecondsBetweenLooks = 20;
/// Twice as long as the toolkit takes. It may also never know, when the keyboard left while a menu
/// was open.
constexpr int mostLooks = 10;

/// By the display server's word.
std::optional<xcb_window_t> windowWithKeyboard() {
  xcb_connection_t* connection = qtConnection();
  if (connection == nullptr) return std::nullopt;
  const auto withKeyboard =
      replyTo<xcb_get_input_focus_reply>(connection, xcb_get_input_focus(connection));
  if (!withKeyboard) return std::nullopt;
  return withKeyboard->focus;
}

bool isKeyboardThoughtToBeHere() {
  if (QGuiApplication::focusWindow() == nullptr) return false;
  const auto window = windowWithKeyboard();
  return window && QWidget::find(*window) == nullptr;
}

void lookAgain(QObject& context, std::function<void()> then, int looksLeft) {
  if (looksLeft == 0 || !isKeyboardThoughtToBeHere()) return then();
  QTimer::singleShot(
      millisecondsBetweenLooks, &context,
      [&context, then = std::move(then), looksLeft] { lookAgain(context, then, looksLeft - 1); });
}

}  // namespace

void acknowledgeActiveWindow() {
  if (const auto window = windowWithKeyboard()) {
    QApplication::setActiveWindow(QWidget::find(*window));
  }
}

void onceKeyboardIsKnownToHaveLeft(QObject& context, std::function<void()> then) {
  lookAgain(context, std::move(then), mostLooks);
}

}  // namespace vistrel::platform::linux_desktop
