#include <algorithm>
#include <iterator>
#include <sstream>

#include "tests/hostile/Fuzzer.h"

namespace vistrel::hostile {

namespace x11 = platform::linux_desktop;

namespace {

testbed::XReply<xcb_get_window_attributes_reply_t> attributesOf(
    const testbed::XConnection& connection, xcb_window_t window) {
  return testbed::XReply<xcb_get_window_attributes_reply_t>(xcb_get_window_attributes_reply(
      connection.get(), xcb_get_window_attributes(connection.get(), window), nullptr));
}

bool isToBeListed(const testbed::XConnection& connection, xcb_window_t window) {
  const auto attributes = attributesOf(connection, window);
  return attributes && attributes->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT &&
         attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

std::vector<xcb_window_t> childrenOf(const testbed::XConnection& connection, xcb_window_t window) {
  const testbed::XReply<xcb_query_tree_reply_t> tree(
      xcb_query_tree_reply(connection.get(), xcb_query_tree(connection.get(), window), nullptr));
  if (!tree) return {};
  const auto* first = xcb_query_tree_children(tree.get());
  return {std::reverse_iterator(first + tree->children_len), std::reverse_iterator(first)};
}

/// Of a property; 0 when there is none.
int formatOf(const testbed::XConnection& connection, xcb_window_t window, std::string_view name) {
  const testbed::XReply<xcb_get_property_reply_t> reply(
      xcb_get_property_reply(connection.get(),
                             xcb_get_property(connection.get(), 0, window, connection.atom(name),
                                              XCB_GET_PROPERTY_TYPE_ANY, 0, 0),
                             nullptr));
  return reply ? reply->format : 0;
}

/// The first window with WM_STATE `depth` generations below `window`.
std::optional<xcb_window_t> withStateAt(const testbed::XConnection& connection, xcb_window_t window,
                                        int depth) {
  if (depth == 0) {
    const bool hasState = formatOf(connection, window, "WM_STATE") != 0;
    return hasState ? std::optional(window) : std::nullopt;
  }
  for (const auto child : childrenOf(connection, window)) {
    if (const auto found = withStateAt(connection, child, depth - 1)) return found;
  }
  return std::nullopt;
}

xcb_window_t clientIn(const testbed::XConnection& connection, xcb_window_t top) {
  constexpr int deepest = 4;
  for (int depth = 0; depth < deepest; ++depth) {
    if (const auto found = withStateAt(connection, top, depth)) return *found;
  }
  return top;
}

std::string textOf(const std::vector<xcb_window_t>& windows) {
  std::ostringstream text;
  for (const auto each : windows) text << " 0x" << std::hex << each;
  return text.str();
}

}  // namespace

std::optional<std::vector<xcb_window_t>> Fuzzer::managersList() {
  const auto check = person_.numbers(person_.root(), checkProperty);
  if (check.empty()) return std::nullopt;
  const auto echo = person_.numbers(check[0], checkProperty);
  if (echo.empty() || echo[0] != check[0]) return std::nullopt;
  if (formatOf(person_, person_.root(), listProperty) != 32) return std::nullopt;
  auto list = person_.numbers(person_.root(), listProperty);
  std::reverse(list.begin(), list.end());
  return list;
}

std::vector<xcb_window_t> Fuzzer::expectedIds() {
  std::vector<xcb_window_t> candidates;
  if (const auto managed = managersList()) {
    for (const auto each : *managed) {
      const bool isRepeated =
          std::find(candidates.begin(), candidates.end(), each) != candidates.end();
      if (each != person_.root() && !isRepeated) candidates.push_back(each);
    }
  } else {
    for (const auto top : childrenOf(person_, person_.root())) {
      if (isToBeListed(person_, top)) candidates.push_back(clientIn(person_, top));
    }
  }
  std::erase_if(candidates, [this](xcb_window_t each) { return !isToBeListed(person_, each); });
  return candidates;
}

std::string Fuzzer::wrongListing() {
  drainProgram();
  ++listings_;
  const auto content =
      x11::listWindows(*lister_, names_, x11::ScreenLayout(), platform::DesktopWindows::included,
                       platform::ListedWindows::onScreen);
  if (lister_->isLost()) return "the server has ended the lister's connection";
  std::vector<xcb_window_t> ids;
  for (const auto& each : content->windows) {
    ids.push_back(each->windowID);
    const auto own = std::find_if(windows_.begin(), windows_.end(), [&](const Window& window) {
      return window.id == each->windowID && window.title;
    });
    if (own != windows_.end() && own->title != each->title) return "a title is wrong";
  }
  const auto expected = expectedIds();
  if (ids == expected) return {};
  return "listed are" + textOf(ids) + " instead of" + textOf(expected);
}

}  // namespace vistrel::hostile
