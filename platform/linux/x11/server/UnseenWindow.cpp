#include "platform/linux/x11/server/UnseenWindow.h"

namespace vistrel::platform::linux_desktop {

OwnWindow makeUnseenWindow(Connection& connection, std::uint32_t events) {
  OwnWindow window(connection.xcb());
  xcb_create_window(connection.xcb(), XCB_COPY_FROM_PARENT, window.id(), connection.root(), 0, 0, 1,
                    1, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                    &events);
  return window;
}

}  // namespace vistrel::platform::linux_desktop
