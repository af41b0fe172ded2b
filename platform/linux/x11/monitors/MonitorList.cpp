#include "platform/linux/x11/monitors/MonitorList.h"

#include <algorithm>
#include <tuple>

namespace vistrel::platform::linux_desktop {
namespace {

std::string nameOf(Connection& connection, xcb_atom_t atom) {
  const auto reply =
      replyTo<xcb_get_atom_name_reply>(connection.xcb(), xcb_get_atom_name(connection.xcb(), atom));
  if (!reply) return {};
  return {xcb_get_atom_name_name(reply.get()),
          static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get()))};
}

}  // namespace

bool offersMonitors(Connection& connection) {
  auto* const xcb = connection.xcb();
  const auto* extension = xcb_get_extension_data(xcb, &xcb_randr_id);
  if (!extension || !extension->present) return false;
  const auto version =
      replyTo<xcb_randr_query_version_reply>(xcb, xcb_randr_query_version(xcb, 1, 5));
  return version && std::tuple(version->major_version, version->minor_version) >= std::tuple(1, 5);
}

std::vector<ListedMonitor> monitorsOf(Connection& connection) {
  constexpr std::uint8_t activeOnly = 1;
  auto* const xcb = connection.xcb();
  const auto reply = replyTo<xcb_randr_get_monitors_reply>(
      xcb, xcb_randr_get_monitors(xcb, connection.root(), activeOnly));
  std::vector<ListedMonitor> monitors;
  if (!reply) return monitors;
  for (auto each = xcb_randr_get_monitors_monitors_iterator(reply.get()); each.rem > 0;
       xcb_randr_monitor_info_next(&each)) {
    const auto& info = *each.data;
    monitors.push_back(
        {info.name, nameOf(connection, info.name),
         PixelRect{info.x, info.y, info.width, info.height}, info.primary != 0,
         info.nOutput > 0 ? *xcb_randr_monitor_info_outputs(&info) : xcb_randr_output_t{XCB_NONE}});
  }
  std::stable_partition(monitors.begin(), monitors.end(),
                        [](const ListedMonitor& each) { return each.isPrimary; });
  return monitors;
}

std::vector<PixelRect> areasOf(const std::vector<ListedMonitor>& monitors) {
  std::vector<PixelRect> areas;
  areas.reserve(monitors.size());
  for (const auto& each : monitors) areas.push_back(each.area);
  return areas;
}

}  // namespace vistrel::platform::linux_desktop
