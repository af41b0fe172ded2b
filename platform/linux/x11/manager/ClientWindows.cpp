#include "platform/linux/x11/manager/ClientWindows.h"

#include <algorithm>
#include <list>
#include <optional>
#include <set>

#include "platform/linux/x11/manager/Manager.h"
#include "platform/linux/x11/manager/ProcessIds.h"
#include "platform/linux/x11/server/Property.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// Each window where it comes first, `root` not at all: any client can write into the manager's
/// list.
std::vector<xcb_window_t> withoutRepetitions(std::vector<xcb_window_t> windows, xcb_window_t root) {
  std::set<xcb_window_t> seen{root};
  std::erase_if(windows, [&](xcb_window_t each) { return !seen.insert(each).second; });
  return windows;
}

std::optional<std::vector<xcb_window_t>> managedWindows(Connection& connection) {
  if (!hasManager(connection)) return std::nullopt;
  for (const auto* list : {"_NET_CLIENT_LIST_STACKING", "_NET_CLIENT_LIST"}) {
    const auto property = propertyOf(connection, connection.root(), list);
    if (!property.hasValues()) continue;
    auto windows = property.values();
    std::reverse(windows.begin(), windows.end());
    return withoutRepetitions(std::move(windows), connection.root());
  }
  return std::nullopt;
}

using TreeReply = XcbPointer<xcb_query_tree_reply_t>;

/// Topmost first.
std::vector<xcb_window_t> childrenOf(const TreeReply& tree) {
  if (!tree) return {};
  const auto* first = xcb_query_tree_children(tree.get());
  std::vector<xcb_window_t> children(first, first + tree->children_len);
  std::reverse(children.begin(), children.end());
  return children;
}

/// The root's children that can be seen, topmost first.
std::vector<xcb_window_t> viewableTops(Connection& connection) {
  auto* const xcb = connection.xcb();
  const auto tops =
      childrenOf(replyTo<xcb_query_tree_reply>(xcb, xcb_query_tree(xcb, connection.root())));
  std::vector<xcb_get_window_attributes_cookie_t> asked;
  asked.reserve(tops.size());
  for (const auto top : tops) asked.push_back(xcb_get_window_attributes(xcb, top));
  std::vector<xcb_window_t> viewable;
  for (std::size_t i = 0; i < tops.size(); ++i) {
    const auto attributes = replyTo<xcb_get_window_attributes_reply>(xcb, asked[i]);
    if (attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
        attributes->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT) {
      viewable.push_back(tops[i]);
    }
  }
  return viewable;
}

/// What is asked about a window that may be a client's, or hold one.
struct StateQuery {
  StateQuery(Connection& c, xcb_window_t asked)
      : window(asked), state(c, asked, "WM_STATE"), tree(c.xcb(), xcb_query_tree(c.xcb(), asked)) {}

  xcb_window_t window;
  PropertyRequest state;
  Pending<xcb_query_tree_reply, xcb_query_tree_cookie_t> tree;
};

/// The window with WM_STATE, which managers put on each client's window (ICCCM 4.1.3.1): nearest to
/// `top`, itself included.
std::optional<xcb_window_t> windowWithState(Connection& connection, xcb_window_t top) {
  // A manager's frame may be one window inside another, with some more for its parts; what lies
  // deeper, or is many more, is the client's own.
  constexpr int deepest = 4;
  constexpr std::size_t mostAtOneDepth = 64;
  std::vector<xcb_window_t> generation{top};
  for (int depth = 0; depth < deepest && !generation.empty(); ++depth) {
    std::list<StateQuery> queries;
    for (const auto each : generation) queries.emplace_back(connection, each);
    generation.clear();
    for (auto& each : queries) {
      if (each.state.fetch().exists()) return each.window;
      const auto children = childrenOf(each.tree.fetch());
      generation.insert(generation.end(), children.begin(), children.end());
    }
    generation.resize(std::min(generation.size(), mostAtOneDepth));
  }
  return std::nullopt;
}

std::vector<xcb_window_t> windowsBelowRoot(Connection& connection) {
  auto windows = viewableTops(connection);
  for (auto& each : windows) each = windowWithState(connection, each).value_or(each);
  return windows;
}

}  // namespace

std::vector<xcb_window_t> clientWindows(Connection& connection) {
  if (auto managed = managedWindows(connection)) return *std::move(managed);
  return windowsBelowRoot(connection);
}

std::vector<xcb_window_t> clientWindowsOf(Connection& connection, std::int32_t processID) {
  const auto clients = clientWindows(connection);
  std::list<ProcessIdRequest> requests;
  for (const auto each : clients) requests.emplace_back(connection, each);
  std::vector<xcb_window_t> windows;
  auto request = requests.begin();
  for (const auto each : clients) {
    const auto known = (request++)->fetch();
    if (known.value_or(standInProcessId(connection, each)) == processID) windows.push_back(each);
  }
  return windows;
}

}  // namespace vistrel::platform::linux_desktop
