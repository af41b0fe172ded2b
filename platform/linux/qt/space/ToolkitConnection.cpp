#include "platform/linux/qt/space/ToolkitConnection.h"

#include <QGuiApplication>

#include "platform/linux/XcbPointers.h"

namespace vistrel::platform::linux_desktop {

xcb_connection_t* toolkitConnection() {
  const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  return x11 == nullptr ? nullptr : x11->connection();
}

void syncToolkit() {
  xcb_connection_t* connection = toolkitConnection();
  if (connection == nullptr) return;
  replyTo<xcb_get_input_focus_reply>(connection, xcb_get_input_focus(connection));
}

}  // namespace vistrel::platform::linux_desktop
