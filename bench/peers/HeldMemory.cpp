#include "bench/peers/HeldMemory.h"

#include <fstream>
#include <stdexcept>
#include <string>
#include <xcb/res.h>

#include "tests/support/ClientsOfProcess.h"

namespace vistrel::bench {

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
  for (const std::uint32_t client : testbed::clientsOfProcess(connection, pid)) {
    const testbed::XReply<xcb_res_query_client_pixmap_bytes_reply_t> bytes(
        xcb_res_query_client_pixmap_bytes_reply(
            connection.get(), xcb_res_query_client_pixmap_bytes(connection.get(), client),
            nullptr));
    if (bytes) sum += std::uint64_t{bytes->bytes_overflow} << 32 | bytes->bytes;
  }
  return sum;
}

}  // namespace vistrel::bench
