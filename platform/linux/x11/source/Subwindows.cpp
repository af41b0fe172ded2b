#include "platform/linux/x11/source/Subwindows.h"

#include <optional>
#include <utility>
#include <vector>

namespace vistrel::platform::linux_desktop {
namespace {

/// More than a window has whose controls are windows; what exceeds it is not worth the traffic.
constexpr std::size_t mostWindows = 512;

constexpr std::uint32_t toChildren = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;

/// What the connection listens to of each, which may be for somebody else; none of one that has
/// gone.
std::vector<std::optional<std::uint32_t>> ownMasks(Connection& connection,
                                                   const std::vector<xcb_window_t>& windows) {
  auto* const xcb = connection.xcb();
  std::vector<xcb_get_window_attributes_cookie_t> asked;
  asked.reserve(windows.size());
  for (const auto window : windows) asked.push_back(xcb_get_window_attributes(xcb, window));
  std::vector<std::optional<std::uint32_t>> masks;
  for (const auto& cookie : asked) {
    const auto attributes = replyTo<xcb_get_window_attributes_reply>(xcb, cookie);
    masks.push_back(attributes ? std::optional(attributes->your_event_mask) : std::nullopt);
  }
  return masks;
}

}  // namespace

Subwindows::~Subwindows() { release(); }

void Subwindows::release() {
  const std::vector<xcb_window_t> windows(windows_.begin(), windows_.end());
  const auto masks = ownMasks(connection_, windows);
  for (std::size_t i = 0; i < windows.size(); ++i) {
    if (masks[i] != toChildren) continue;
    forgive(connection_.xcb(), connection_.selectEvents(windows[i], XCB_EVENT_MASK_NO_EVENT));
  }
  windows_.clear();
}

void Subwindows::watch(xcb_window_t client) {
  release();
  client_ = client;
  auto* const xcb = connection_.xcb();
  std::vector<xcb_window_t> parents{client};
  while (!parents.empty()) {
    std::vector<xcb_query_tree_cookie_t> asked;
    asked.reserve(parents.size());
    for (const auto parent : parents) asked.push_back(xcb_query_tree(xcb, parent));
    parents.clear();
    for (const auto& cookie : asked) {
      const auto tree = replyTo<xcb_query_tree_reply>(xcb, cookie);
      if (!tree) continue;
      const auto* const children = xcb_query_tree_children(tree.get());
      parents.insert(parents.end(), children,
                     children + xcb_query_tree_children_length(tree.get()));
    }
    // Before their own children are asked for, so that none is missed that is made meanwhile.
    const auto masks = ownMasks(connection_, parents);
    for (std::size_t i = 0; i < parents.size(); ++i) {
      if (masks[i] == XCB_EVENT_MASK_NO_EVENT) add(parents[i]);
    }
    if (windows_.size() >= mostWindows) return;
  }
}

void Subwindows::add(xcb_window_t window) {
  if (windows_.size() >= mostWindows || !windows_.insert(window).second) return;
  forgive(connection_.xcb(), connection_.selectEvents(window, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY));
}

bool Subwindows::holds(xcb_window_t parent) const {
  return parent == client_ || windows_.contains(parent);
}

void Subwindows::handle(const xcb_generic_event_t& event) {
  hasLost_ |= isLoss(event);
  const auto type = typeOf(event);
  if (type == XCB_CREATE_NOTIFY) {
    const auto& created = eventAs<xcb_create_notify_event_t>(event);
    if (holds(created.parent)) add(created.window);
  } else if (type == XCB_DESTROY_NOTIFY) {
    windows_.erase(eventAs<xcb_destroy_notify_event_t>(event).window);
  }
}

bool Subwindows::isLoss(const xcb_generic_event_t& event) const {
  if (typeOf(event) == XCB_UNMAP_NOTIFY) {
    const auto& unmapped = eventAs<xcb_unmap_notify_event_t>(event);
    return unmapped.event != unmapped.window && holds(unmapped.event);
  }
  if (typeOf(event) != XCB_DESTROY_NOTIFY) return false;
  const auto& destroyed = eventAs<xcb_destroy_notify_event_t>(event);
  return destroyed.event != destroyed.window && holds(destroyed.event);
}

bool Subwindows::takeLoss() { return std::exchange(hasLost_, false); }

}  // namespace vistrel::platform::linux_desktop
