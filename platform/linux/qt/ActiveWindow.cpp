#include "platform/linux/qt/ActiveWindow.h"

#include <QApplication>
#include <QWidget>
#include <QWindow>

namespace vistrel::platform::linux_desktop {

void acknowledgeActiveWindow() {
  const QWindow* const withKeyboard = QGuiApplication::focusWindow();
  QApplication::setActiveWindow(withKeyboard == nullptr ? nullptr
                                                        : QWidget::find(withKeyboard->winId()));
}

}  // namespace vistrel::platform::linux_desktop
