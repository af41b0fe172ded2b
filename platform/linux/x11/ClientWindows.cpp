#include "platform/linux/x11/ClientWindows.h"

#include <algorithm>
#include <optional>

#include "platform/linux/x11/Property.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// A manager that has gone leaves its property on the root; a living one shows on the window that
/// the property names (EWMH, _NET_SUPPORTING_WM_CHECK).
bool hasEwmhManager(Connection& connection) {
  constexpr auto check = "_NET_SUPPORTING_WM_CHECK";
  const auto window = propertyOf(connection, connection.root(), check).firstValue();
  return window && propertyOf(connection, *window, check).firstValue() == window;
}

std::optional<std::vector<xcb_window_t>> managedWindows(Connection& connection) {
  if (!hasEwmhManager(connection)) return std::nullopt;
  for (const auto* list : {"_NET_CLIENT_LIST_STACKING", "_NET_CLIENT_LIST"}) {
    const auto property = propertyOf(connection, connection.root(), list);
    if (!property.exists()) continue;
    auto windows = property.values();
    std::reverse(windows.begin(), windows.end());
    return windows;
  }
  return std::nullopt;
}

/// Topmost first.
std::vector<xcb_window_t> childrenOf(Connection& connection, xcb_window_t window) {
  const auto tree =
      replyTo<xcb_query_tree_reply>(connection.xcb(), xcb_query_tree(connection.xcb(), window));
  if (!tree) return {};
  const auto* first = xcb_query_tree_children(tree.get());
  std::vector<xcb_window_t> children(first, first + tree->children_len);
  std::reverse(children.begin(), children.end());
  return children;
}

bool isViewable(Connection& connection, xcb_window_t window) {
  const auto attributes = replyTo<xcb_get_window_attributes_reply>(
      connection.xcb(), xcb_get_window_attributes(connection.xcb(), window));
  return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
         attributes->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT;
}

/// The window with WM_STATE, which managers put on each client's window (ICCCM 4.1.3.1): nearest to
/// `top`, itself included.
std::optional<xcb_window_t> windowWithState(Connection& connection, xcb_window_t top) {
  std::vector<xcb_window_t> generation{top};
  while (!generation.empty()) {
    std::vector<xcb_window_t> next;
    for (const auto each : generation) {
      if (propertyOf(connection, each, "WM_STATE").exists()) return each;
      const auto children = childrenOf(connection, each);
      next.insert(next.end(), children.begin(), children.end());
    }
    generation = std::move(next);
  }
  return std::nullopt;
}

std::vector<xcb_window_t> windowsBelowRoot(Connection& connection) {
  std::vector<xcb_window_t> windows;
  for (const auto top : childrenOf(connection, connection.root())) {
    if (!isViewable(connection, top)) continue;
    windows.push_back(windowWithState(connection, top).value_or(top));
  }
  return windows;
}

}  // namespace

std::vector<xcb_window_t> clientWindows(Connection& connection) {
  if (auto managed = managedWindows(connection)) return *std::move(managed);
  return windowsBelowRoot(connection);
}

}  // namespace vistrel::platform::linux_desktop
