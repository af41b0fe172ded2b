#include "platform/linux/qt/space/QtConnection.h"

#include <QGuiApplication>
#include <cassert>

#include "platform/linux/CurrentThread.h"
#include "platform/linux/XcbRequests.h"

namespace vistrel::platform::linux_desktop {

xcb_connection_t* qtConnection() {
  assert(isMainThread());
  const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  return x11 == nullptr ? nullptr : x11->connection();
}

void syncQt() {
  xcb_connection_t* connection = qtConnection();
  if (connection == nullptr) return;
  replyTo<xcb_get_input_focus_reply>(connection, xcb_get_input_focus(connection));
}

}  // namespace vistrel::platform::linux_desktop
