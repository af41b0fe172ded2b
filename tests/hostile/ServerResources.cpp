#include "tests/hostile/ServerResources.h"

#include <xcb/res.h>

namespace vistrel::hostile {
namespace {

std::string nameOf(const testbed::XConnection& connection, xcb_atom_t atom) {
  const testbed::XReply<xcb_get_atom_name_reply_t> reply(xcb_get_atom_name_reply(
      connection.get(), xcb_get_atom_name(connection.get(), atom), nullptr));
  if (!reply) return std::to_string(atom);
  return {xcb_get_atom_name_name(reply.get()),
          static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get()))};
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, const ServerResources& resources) {
  for (const auto& [type, count] : resources.counts) stream << type << ": " << count << ", ";
  return stream << "bytes of pixmaps: " << resources.pixmapBytes;
}

ServerResources resourcesOf(const testbed::XConnection& connection, std::uint32_t idBase) {
  auto* const xcb = connection.get();
  ServerResources resources;
  const testbed::XReply<xcb_res_query_client_resources_reply_t> counts(
      xcb_res_query_client_resources_reply(xcb, xcb_res_query_client_resources(xcb, idBase),
                                           nullptr));
  const testbed::XReply<xcb_res_query_client_pixmap_bytes_reply_t> bytes(
      xcb_res_query_client_pixmap_bytes_reply(xcb, xcb_res_query_client_pixmap_bytes(xcb, idBase),
                                              nullptr));
  if (!counts || !bytes) return resources;
  const auto* types = xcb_res_query_client_resources_types(counts.get());
  for (int i = 0; i < xcb_res_query_client_resources_types_length(counts.get()); ++i) {
    resources.counts[nameOf(connection, types[i].resource_type)] = types[i].count;
  }
  resources.pixmapBytes = std::uint64_t{bytes->bytes_overflow} << 32 | bytes->bytes;
  return resources;
}

}  // namespace vistrel::hostile
