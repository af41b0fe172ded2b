#include "platform/linux/x11/server/ClientRoom.h"

#include <cstdint>
#include <xcb/res.h>

namespace vistrel::platform::linux_desktop {

namespace {

/// A server takes as many clients as can have ids of their own: each gets those that differ in the
/// mask's bits (X11 protocol, "Connection Setup"), and ids have 29 bits.
std::uint32_t mostClients(Connection& connection) {
  constexpr std::uint32_t ids = 1U << 29;
  return ids / (xcb_get_setup(connection.xcb())->resource_id_mask + 1);
}

}  // namespace

bool hasRoomForMoreThan(Connection& connection, int clients) {
  const auto* extension = xcb_get_extension_data(connection.xcb(), &xcb_res_id);
  if (!extension || !extension->present) return true;
  const auto reply = replyTo<xcb_res_query_clients_reply>(connection.xcb(),
                                                          xcb_res_query_clients(connection.xcb()));
  return !reply ||
         reply->num_clients + static_cast<std::uint32_t>(clients) < mostClients(connection);
}

}  // namespace vistrel::platform::linux_desktop
