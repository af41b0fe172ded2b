#include "platform/linux/x11/manager/TopLevel.h"

#include <algorithm>
#include <map>

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

std::vector<xcb_window_t> topmostFirst(const Connection& connection,
                                       std::vector<xcb_window_t> windows) {
  const auto tree = replyTo<xcb_query_tree_reply>(
      connection.xcb(), xcb_query_tree(connection.xcb(), connection.root()));
  if (!tree) return windows;
  const auto* const lowest = xcb_query_tree_children(tree.get());
  const auto* const end = lowest + tree->children_len;
  std::map<xcb_window_t, std::ptrdiff_t> heights;
  for (const auto each : windows) {
    heights[each] = std::find(lowest, end, topLevelOf(connection, each)) - lowest;
  }
  std::stable_sort(windows.begin(), windows.end(),
                   [&](auto a, auto b) { return heights[a] > heights[b]; });
  return windows;
}

}  // namespace vistrel::platform::linux_desktop
