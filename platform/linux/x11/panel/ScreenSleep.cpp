#include "platform/linux/x11/panel/ScreenSleep.h"

#include <cassert>
#include <xcb/screensaver.h>

namespace vistrel::platform::linux_desktop {

/// Monitors that are switched off (DPMS) need no asking of their own: X.Org's servers activate the
/// screen saver before that, and end it before they switch the monitors on (`DPMSSet` in their
/// sources; neither Xvfb 21.1.7 nor Xorg over its dummy card offers DPMS to see it by).
ScreenSleep::ScreenSleep(Connection& connection) : connection_(connection) {
  if (connection_.extensions().screenSaverNotify == 0) return;
  auto* const xcb = connection_.xcb();
  // Before the state is asked for, so that no change is missed.
  xcb_screensaver_select_input(xcb, connection_.root(), XCB_SCREENSAVER_EVENT_NOTIFY_MASK);
  const auto info = replyTo<xcb_screensaver_query_info_reply>(
      xcb, xcb_screensaver_query_info(xcb, connection_.root()));
  if (info) isAsleep_ = hidesScreen(info->state, info->kind);
}

void ScreenSleep::handle(const xcb_generic_event_t& event) {
  assert(thread_.isCurrent());
  const auto notify = connection_.extensions().screenSaverNotify;
  if (notify == 0 || typeOf(event) != notify) return;
  const auto& saver = eventAs<xcb_screensaver_notify_event_t>(event);
  isAsleep_ = hidesScreen(saver.state, saver.kind);
}

bool ScreenSleep::hidesScreen(std::uint8_t state, std::uint8_t kind) {
  if (state != XCB_SCREENSAVER_STATE_ON && state != XCB_SCREENSAVER_STATE_CYCLE) return false;
  if (kind != XCB_SCREENSAVER_KIND_INTERNAL) return true;
  // The server's own pattern needs windows to be drawn again afterwards. Where a person does not
  // allow that, and no blanking either, the saver is active and all stays in sight, unless the
  // monitors are off: a mirror that goes on for nobody does less harm than one that stutters.
  const auto settings = replyTo<xcb_get_screen_saver_reply>(
      connection_.xcb(), xcb_get_screen_saver(connection_.xcb()));
  return settings && settings->allow_exposures != XCB_EXPOSURES_NOT_ALLOWED;
}

}  // namespace vistrel::platform::linux_desktop
