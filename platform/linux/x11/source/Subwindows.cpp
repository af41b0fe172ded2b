#include "platform/linux/x11/source/Subwindows.h"

#include <utility>
#include <vector>

namespace vistrel::platform::linux_desktop {
namespace {

/// More than a window has whose controls are windows; what exceeds it is not worth the traffic.
constexpr std::size_t mostWindows = 512;

}  // namespace

Subwindows::~Subwindows() {
  for (const auto window : windows_) {
    forgive(connection_.xcb(), connection_.selectEvents(window, XCB_EVENT_MASK_NO_EVENT));
  }
}

void Subwindows::watch(xcb_window_t client) {
  client_ = client;
  windows_.clear();
  auto* const xcb = connection_.xcb();
  std::vector<xcb_window_t> parents{client};
  while (!parents.empty()) {
    std::vector<xcb_query_tree_cookie_t> asked;
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
    for (const auto window : parents) add(window);
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
  const auto type = typeOf(event);
  if (type == XCB_CREATE_NOTIFY) {
    const auto& created = eventAs<xcb_create_notify_event_t>(event);
    if (holds(created.parent)) add(created.window);
  } else if (type == XCB_UNMAP_NOTIFY) {
    const auto& unmapped = eventAs<xcb_unmap_notify_event_t>(event);
    hasLost_ |= unmapped.event != unmapped.window && holds(unmapped.event);
  } else if (type == XCB_DESTROY_NOTIFY) {
    const auto& destroyed = eventAs<xcb_destroy_notify_event_t>(event);
    hasLost_ |= destroyed.event != destroyed.window && holds(destroyed.event);
    windows_.erase(destroyed.window);
  }
}

bool Subwindows::takeLoss() { return std::exchange(hasLost_, false); }

}  // namespace vistrel::platform::linux_desktop
