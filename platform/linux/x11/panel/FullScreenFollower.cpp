#include "platform/linux/x11/panel/FullScreenFollower.h"

#include <utility>

#include "platform/linux/x11/manager/Manager.h"
#include "platform/linux/x11/server/Property.h"
#include "platform/linux/x11/server/ServedConnection.h"

namespace vistrel::platform::linux_desktop {
namespace {

bool isIconic(Connection& connection, xcb_window_t window) {
  return propertyOf(connection, window, "WM_STATE").firstValue() == iconicState;
}

}  // namespace

std::shared_ptr<FullScreenFollower> FullScreenFollower::on(
    const std::shared_ptr<SerialQueue>& queue) {
  auto connection = Connection::open();
  if (!connection) return nullptr;
  std::shared_ptr<FullScreenFollower> follower(new FullScreenFollower(std::move(connection)));
  queue->async([queue = queue.get(), follower] {
    serveOn(*queue, *follower->connection_, [follower] { follower->serve(); });
    follower->followActiveWindow();
  });
  return follower;
}

FullScreenFollower::FullScreenFollower(std::unique_ptr<Connection> connection)
    : connection_(std::move(connection)) {
  forgive(connection_->xcb(),
          connection_->selectEvents(connection_->root(), XCB_EVENT_MASK_PROPERTY_CHANGE));
}

void FullScreenFollower::add(xcb_window_t panel) {
  if (!panels_.insert(panel).second) return;
  forgive(connection_->xcb(), connection_->selectEvents(panel, XCB_EVENT_MASK_STRUCTURE_NOTIFY |
                                                                   XCB_EVENT_MASK_PROPERTY_CHANGE));
  if (fullScreen_ != XCB_WINDOW_NONE) attach(panel);
  connection_->flush();
}

void FullScreenFollower::serve() {
  connection_->serve([this](const xcb_generic_event_t& event) { handle(event); });
}

void FullScreenFollower::handle(const xcb_generic_event_t& event) {
  if (typeOf(event) == XCB_PROPERTY_NOTIFY) {
    changedProperty(eventAs<xcb_property_notify_event_t>(event));
  } else if (typeOf(event) == XCB_DESTROY_NOTIFY) {
    panels_.erase(eventAs<xcb_destroy_notify_event_t>(event).window);
  }
}

void FullScreenFollower::changedProperty(const xcb_property_notify_event_t& event) {
  if (event.window == connection_->root()) {
    if (event.atom == connection_->atom("_NET_ACTIVE_WINDOW")) followActiveWindow();
  } else if (event.window == active_) {
    if (event.atom == connection_->atom("_NET_WM_STATE")) followState();
  } else if (event.atom == connection_->atom("WM_STATE")) {
    restoreMinimised();
  }
}

void FullScreenFollower::followActiveWindow() {
  const auto root = connection_->root();
  xcb_window_t active =
      propertyOf(*connection_, root, "_NET_ACTIVE_WINDOW").firstValue().value_or(XCB_WINDOW_NONE);
  // Any client can write there, and the root is to be listened to all the time.
  if (active == root) active = XCB_WINDOW_NONE;
  if (active == active_) return;
  watchActive(XCB_EVENT_MASK_NO_EVENT);
  active_ = active;
  watchActive(XCB_EVENT_MASK_PROPERTY_CHANGE);
  followState();
}

void FullScreenFollower::watchActive(std::uint32_t mask) {
  if (active_ == XCB_WINDOW_NONE || panels_.contains(active_)) return;
  forgive(connection_->xcb(), connection_->selectEvents(active_, mask));
}

void FullScreenFollower::followState() {
  const xcb_window_t fullScreen = hasState(*connection_, active_, "_NET_WM_STATE_FULLSCREEN")
                                      ? active_
                                      : xcb_window_t{XCB_WINDOW_NONE};
  if (fullScreen == fullScreen_) return;
  fullScreen_ = fullScreen;
  for (const xcb_window_t panel : panels_) attach(panel);
  restoreMinimised();
}

void FullScreenFollower::attach(xcb_window_t panel) {
  auto* const xcb = connection_->xcb();
  // The toolkit destroys panels on a connection of its own; word of that may be under way.
  forgive(xcb, fullScreen_ == XCB_WINDOW_NONE
                   ? xcb_delete_property_checked(xcb, panel, XCB_ATOM_WM_TRANSIENT_FOR)
                   : xcb_change_property_checked(xcb, XCB_PROP_MODE_REPLACE, panel,
                                                 XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW, 32, 1,
                                                 &fullScreen_));
  if (fullScreen_ == XCB_WINDOW_NONE) return;
  // xfwm4 4.18.0 finds a transient's new place only when it is stacked next.
  const std::uint32_t above = XCB_STACK_MODE_ABOVE;
  forgive(xcb, xcb_configure_window_checked(xcb, panel, XCB_CONFIG_WINDOW_STACK_MODE, &above));
}

void FullScreenFollower::restoreMinimised() {
  // Managers minimise a window with its transients, and bring a transient back with its window: so
  // only panels that are free again are brought back (ICCCM, 4.1.4: by mapping them).
  if (fullScreen_ != XCB_WINDOW_NONE) return;
  for (const xcb_window_t panel : panels_) {
    if (!isIconic(*connection_, panel)) continue;
    forgive(connection_->xcb(), xcb_map_window_checked(connection_->xcb(), panel));
  }
}

}  // namespace vistrel::platform::linux_desktop
