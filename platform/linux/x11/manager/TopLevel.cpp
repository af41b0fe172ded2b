#include "platform/linux/x11/manager/TopLevel.h"

#include "platform/linux/XcbRequests.h"

namespace vistrel::platform::linux_desktop {

xcb_window_t topLevelOf(const Connection& connection, xcb_window_t window) {
  for (;;) {
    const auto tree =
        replyTo<xcb_query_tree_reply>(connection.xcb(), xcb_query_tree(connection.xcb(), window));
    if (!tree) return XCB_NONE;
    if (tree->parent == tree->root || tree->parent == XCB_NONE) return window;
    window = tree->parent;
  }
}

}  // namespace vistrel::platform::linux_desktop
