#include "bench/peers/HeldMemory.h"

#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>
#include <xcb/res.h>

namespace vistrel::bench {
namespace {

/// The first ids of the process's connections.
std::vector<std::uint32_t> clientsOf(const testbed::XConnection& connection, pid_t pid) {
  constexpr std::uint32_t everyClient = 0;
  const xcb_res_client_id_spec_t spec{everyClient, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
  const testbed::XReply<xcb_res_query_client_ids_reply_t> reply(xcb_res_query_client_ids_reply(
      connection.get(), xcb_res_query_client_ids(connection.get(), 1, &spec), nullptr));
  std::vector<std::uint32_t> clients;
  if (!reply) return clients;
  for (auto id = xcb_res_query_client_ids_ids_iterator(reply.get()); id.rem > 0;
       xcb_res_client_id_value_next(&id)) {
    if (xcb_res_client_id_value_value_length(id.data) == 0) continue;
    if (static_cast<pid_t>(*xcb_res_client_id_value_value(id.data)) == pid) {
      clients.push_back(id.data->spec.client);
    }
  }
  return clients;
}

}  // namespace

std::uint64_t ownBytes(pid_t pid) {
  std::ifstream file("/proc/" + std::to_string(pid) + "/smaps_rollup");
  for (std::string word; file >> word;) {
    std::uint64_t kilobytes = 0;
    if (word == "Private_Dirty:" && file >> kilobytes) return kilobytes * 1024;
  }
  throw std::runtime_error("a measured process is gone");
}

std::uint64_t pixmapBytes(const testbed::XConnection& connection, pid_t pid) {
  std::uint64_t sum = 0;
  for (const std::uint32_t client : clientsOf(connection, pid)) {
    const testbed::XReply<xcb_res_query_client_pixmap_bytes_reply_t> bytes(
        xcb_res_query_client_pixmap_bytes_reply(
            connection.get(), xcb_res_query_client_pixmap_bytes(connection.get(), client),
            nullptr));
    if (bytes) sum += std::uint64_t{bytes->bytes_overflow} << 32 | bytes->bytes;
  }
  return sum;
}

}  // namespace vistrel::bench
