#include "bench/DrawnFrames.h"

namespace vistrel::bench {

DrawnFrames::DrawnFrames(const testbed::XConnection& connection, xcb_window_t window)
    : connection_(&connection), damage_(xcb_generate_id(connection.get())) {
  // A server speaks to those alone who have asked for the version.
  const testbed::XReply<xcb_damage_query_version_reply_t> version(xcb_damage_query_version_reply(
      connection.get(),
      xcb_damage_query_version(connection.get(), XCB_DAMAGE_MAJOR_VERSION,
                               XCB_DAMAGE_MINOR_VERSION),
      nullptr));
  xcb_damage_create(connection.get(), damage_, window, XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
  connection.sync();
  count();
  count_ = 0;
}

DrawnFrames::~DrawnFrames() { xcb_damage_destroy(connection_->get(), damage_); }

int DrawnFrames::count() {
  // A frame may be drawn in several rectangles, but frames are 33 ms apart.
  constexpr xcb_timestamp_t sameFrame = 10;
  connection_->sync();
  const auto* const extension = xcb_get_extension_data(connection_->get(), &xcb_damage_id);
  while (const testbed::XReply<xcb_generic_event_t> event{xcb_poll_for_event(connection_->get())}) {
    if ((event->response_type & 0x7f) != extension->first_event + XCB_DAMAGE_NOTIFY) continue;
    const auto drawn = reinterpret_cast<const xcb_damage_notify_event_t*>(event.get())->timestamp;
    if (drawn - lastDrawn_ > sameFrame) ++count_;
    lastDrawn_ = drawn;
  }
  return count_;
}

}  // namespace vistrel::bench
