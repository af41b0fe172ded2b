#include "platform/linux/qt/ActiveWindow.h"

#include <QApplication>
#include <QWidget>

#include "platform/linux/qt/ToolkitConnection.h"

namespace vistrel::platform::linux_desktop {

void acknowledgeActiveWindow() {
  xcb_connection_t* connection = toolkitConnection();
  if (connection == nullptr) return;
  const OwnedReply<xcb_get_input_focus_reply_t> withKeyboard(
      xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr), &std::free);
  if (withKeyboard) QApplication::setActiveWindow(QWidget::find(withKeyboard->focus));
}

}  // namespace vistrel::platform::linux_desktop
