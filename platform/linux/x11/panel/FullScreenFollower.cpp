#include "platform/linux/x11/panel/FullScreenFollower.h"

#include "platform/linux/x11/manager/Manager.h"

namespace vistrel::platform::linux_desktop {

void FullScreenFollower::follow(xcb_window_t window) {
  if (window == followed_) return;
  listen(XCB_EVENT_MASK_NO_EVENT);
  followed_ = window;
  listen(XCB_EVENT_MASK_PROPERTY_CHANGE);
  look();
}

void FullScreenFollower::changedProperty(const xcb_property_notify_event_t& event) {
  if (event.window == followed_ && event.atom == connection_.atom("_NET_WM_STATE")) look();
}

void FullScreenFollower::listen(std::uint32_t mask) {
  if (followed_ == XCB_WINDOW_NONE) return;
  forgive(connection_.xcb(), connection_.selectEvents(followed_, mask));
}

void FullScreenFollower::look() {
  isFullScreen_ = hasState(connection_, followed_, "_NET_WM_STATE_FULLSCREEN");
}

}  // namespace vistrel::platform::linux_desktop
