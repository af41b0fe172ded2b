#include "tests/support/XWindows.h"

#include <algorithm>

namespace vistrel::testbed {
namespace {

XReply<xcb_query_tree_reply_t> tree(const XConnection& connection, xcb_window_t window) {
  return XReply<xcb_query_tree_reply_t>(
      xcb_query_tree_reply(connection.get(), xcb_query_tree(connection.get(), window), nullptr));
}

std::vector<xcb_window_t> childrenOf(const XConnection& connection, xcb_window_t window) {
  const auto reply = tree(connection, window);
  if (!reply) {
    return {};
  }
  const xcb_window_t* children = xcb_query_tree_children(reply.get());
  return {children, children + xcb_query_tree_children_length(reply.get())};
}

void collectWindowsOfProcess(const XConnection& connection, xcb_window_t parent, pid_t pid,
                             std::vector<xcb_window_t>& found) {
  for (const xcb_window_t window : childrenOf(connection, parent)) {
    const auto owner = connection.numbers(window, "_NET_WM_PID");
    if (!owner.empty() && static_cast<pid_t>(owner.front()) == pid) {
      found.push_back(window);
    }
    collectWindowsOfProcess(connection, window, pid, found);
  }
}

XReply<xcb_get_window_attributes_reply_t> attributesOf(const XConnection& connection,
                                                       xcb_window_t window) {
  return XReply<xcb_get_window_attributes_reply_t>(xcb_get_window_attributes_reply(
      connection.get(), xcb_get_window_attributes(connection.get(), window), nullptr));
}

}  // namespace

std::vector<xcb_window_t> windowsOfProcess(const XConnection& connection, pid_t pid) {
  std::vector<xcb_window_t> found;
  collectWindowsOfProcess(connection, connection.root(), pid, found);
  return found;
}

bool isViewable(const XConnection& connection, xcb_window_t window) {
  const auto attributes = attributesOf(connection, window);
  return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

bool isUnmanaged(const XConnection& connection, xcb_window_t window) {
  const auto attributes = attributesOf(connection, window);
  return attributes && attributes->override_redirect != 0;
}

bool isEmbedded(const XConnection& connection, xcb_window_t window) {
  return isUnmanaged(connection, window) && topLevelOf(connection, window) != window;
}

std::optional<Rect> areaOf(const XConnection& connection, xcb_window_t window) {
  const auto geometryCookie = xcb_get_geometry(connection.get(), window);
  const auto originCookie =
      xcb_translate_coordinates(connection.get(), window, connection.root(), 0, 0);
  const XReply<xcb_get_geometry_reply_t> geometry(
      xcb_get_geometry_reply(connection.get(), geometryCookie, nullptr));
  const XReply<xcb_translate_coordinates_reply_t> origin(
      xcb_translate_coordinates_reply(connection.get(), originCookie, nullptr));
  if (!geometry || !origin) {
    return std::nullopt;
  }
  return Rect{origin->dst_x, origin->dst_y, geometry->width, geometry->height};
}

std::string titleOf(const XConnection& connection, xcb_window_t window) {
  return connection.text(window, "_NET_WM_NAME");
}

bool hasState(const XConnection& connection, xcb_window_t window, std::string_view state) {
  return std::ranges::count(connection.numbers(window, "_NET_WM_STATE"), connection.atom(state)) >
         0;
}

xcb_window_t topLevelOf(const XConnection& connection, xcb_window_t window) {
  for (;;) {
    const auto reply = tree(connection, window);
    if (!reply || reply->parent == reply->root || reply->parent == XCB_WINDOW_NONE) {
      return window;
    }
    window = reply->parent;
  }
}

PointerState pointerOn(const XConnection& connection) {
  const XReply<xcb_query_pointer_reply_t> pointer(xcb_query_pointer_reply(
      connection.get(), xcb_query_pointer(connection.get(), connection.root()), nullptr));
  if (!pointer) {
    return {};
  }
  return {{pointer->root_x, pointer->root_y}, pointer->child, pointer->mask};
}

std::vector<xcb_window_t> stackingOrder(const XConnection& connection) {
  return childrenOf(connection, connection.root());
}

bool isAbove(const XConnection& connection, xcb_window_t upper, xcb_window_t lower) {
  const xcb_window_t upperTop = topLevelOf(connection, upper);
  const xcb_window_t lowerTop = topLevelOf(connection, lower);
  const auto order = stackingOrder(connection);
  return std::ranges::find(order, upperTop) > std::ranges::find(order, lowerTop);
}

xcb_window_t focusedWindow(const XConnection& connection) {
  const XReply<xcb_get_input_focus_reply_t> reply(
      xcb_get_input_focus_reply(connection.get(), xcb_get_input_focus(connection.get()), nullptr));
  return reply ? reply->focus : xcb_window_t{XCB_WINDOW_NONE};
}

std::optional<FrameExtents> frameExtentsOf(const XConnection& connection, xcb_window_t window) {
  const auto extents = connection.numbers(window, "_NET_FRAME_EXTENTS");
  if (extents.size() != 4) {
    return std::nullopt;
  }
  return FrameExtents{static_cast<int>(extents[0]), static_cast<int>(extents[1]),
                      static_cast<int>(extents[2]), static_cast<int>(extents[3])};
}

}  // namespace vistrel::testbed
