#include "tests/support/ClientsOfProcess.h"

#include <xcb/res.h>

namespace vistrel::testbed {

std::set<std::uint32_t> clientsOfProcess(const XConnection& connection, pid_t process) {
  const xcb_res_client_id_spec_t processOfEach{0, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
  const XReply<xcb_res_query_client_ids_reply_t> reply(xcb_res_query_client_ids_reply(
      connection.get(), xcb_res_query_client_ids(connection.get(), 1, &processOfEach), nullptr));
  std::set<std::uint32_t> clients;
  if (!reply) return clients;
  for (auto each = xcb_res_query_client_ids_ids_iterator(reply.get()); each.rem > 0;
       xcb_res_client_id_value_next(&each)) {
    const bool isOfProcess =
        xcb_res_client_id_value_value_length(each.data) > 0 &&
        *xcb_res_client_id_value_value(each.data) == static_cast<std::uint32_t>(process);
    if (isOfProcess) clients.insert(each.data->spec.client);
  }
  return clients;
}

}  // namespace vistrel::testbed
