#include "platform/linux/x11/guard/Watch.h"

#include <poll.h>

#include "platform/linux/XcbRequests.h"

namespace vistrel::platform::linux_desktop {

bool hasWindow(Connection& connection, xcb_window_t window) {
  return replyTo<xcb_get_geometry_reply>(connection.xcb(),
                                         xcb_get_geometry(connection.xcb(), window)) != nullptr;
}

void awaitEndOf(Connection& connection, xcb_window_t window,
                const std::function<bool()>& hasEnded) {
  forgive(connection.xcb(), connection.selectEvents(window, XCB_EVENT_MASK_STRUCTURE_NOTIFY));
  while (!hasEnded() && !connection.isLost()) {
    pollfd incoming{connection.descriptor(), POLLIN, 0};
    // The answer to what was asked may have brought the event along.
    if (!connection.pollEvent()) poll(&incoming, 1, -1);
    while (connection.pollEvent()) {
    }
  }
}

}  // namespace vistrel::platform::linux_desktop
