#include "tests/support/Monitors.h"

#include <array>
#include <cstdint>
#include <stdexcept>
#include <sys/uio.h>
#include <xcb/randr.h>
#include <xcb/xcbext.h>

namespace vistrel::testbed {
namespace {

/// RRSetMonitor as the wire carries it, with one output: libxcb 1.15 ends the program over its own
/// request of that name.
struct SetMonitorRequest {
  std::uint8_t majorOpcode = 0;
  std::uint8_t minorOpcode = 0;
  std::uint16_t length = 0;
  xcb_window_t window = XCB_WINDOW_NONE;
  xcb_randr_monitor_info_t monitor{};
  xcb_randr_output_t output = XCB_NONE;
};
static_assert(sizeof(SetMonitorRequest) == 36);

xcb_randr_output_t onlyOutput(const XConnection& connection) {
  const XReply<xcb_randr_get_screen_resources_current_reply_t> reply(
      xcb_randr_get_screen_resources_current_reply(
          connection.get(),
          xcb_randr_get_screen_resources_current(connection.get(), connection.root()), nullptr));
  if (!reply || reply->num_outputs != 1) {
    throw std::runtime_error("the screen has not just one output");
  }
  return *xcb_randr_get_screen_resources_current_outputs(reply.get());
}

void check(const XConnection& connection, xcb_void_cookie_t request) {
  const XReply<xcb_generic_error_t> error(xcb_request_check(connection.get(), request));
  if (error) {
    throw std::runtime_error("the server refuses a monitor");
  }
}

}  // namespace

Monitors::Monitors(const XConnection& connection) : connection_(&connection) {
  const XReply<xcb_randr_query_version_reply_t> version(xcb_randr_query_version_reply(
      connection.get(), xcb_randr_query_version(connection.get(), 1, 5), nullptr));
  if (!version || version->major_version != 1 || version->minor_version < 5) {
    throw std::runtime_error("the server lacks RandR 1.5");
  }
}

void Monitors::setPrimary(const std::string& name, Rect area) const { send(name, area, true); }

void Monitors::set(const std::string& name, Rect area) const { send(name, area, false); }

void Monitors::remove(const std::string& name) const {
  check(*connection_, xcb_randr_delete_monitor_checked(connection_->get(), connection_->root(),
                                                       connection_->atom(name)));
}

void Monitors::send(const std::string& name, Rect area, bool isPrimary) const {
  constexpr int pixelsPerMillimetre = 4;
  SetMonitorRequest request;
  request.window = connection_->root();
  auto& monitor = request.monitor;
  monitor.name = connection_->atom(name);
  monitor.primary = isPrimary ? 1 : 0;
  monitor.nOutput = isPrimary ? 1 : 0;
  monitor.x = static_cast<std::int16_t>(area.x);
  monitor.y = static_cast<std::int16_t>(area.y);
  monitor.width = static_cast<std::uint16_t>(area.width);
  monitor.height = static_cast<std::uint16_t>(area.height);
  monitor.width_in_millimeters = static_cast<std::uint32_t>(area.width / pixelsPerMillimetre);
  monitor.height_in_millimeters = static_cast<std::uint32_t>(area.height / pixelsPerMillimetre);
  if (isPrimary) {
    request.output = onlyOutput(*connection_);
  }
  const std::size_t length = sizeof(request) - (isPrimary ? 0 : sizeof(request.output));
  // XCB writes the request's head, and puts what it needs into the two vectors before the first.
  std::array<iovec, 4> parts{};
  parts[2] = {&request, length};
  const xcb_protocol_request_t kind{2, &xcb_randr_id, XCB_RANDR_SET_MONITOR, 1};
  check(*connection_,
        {xcb_send_request(connection_->get(), XCB_REQUEST_CHECKED, &parts[2], &kind)});
}

}  // namespace vistrel::testbed
