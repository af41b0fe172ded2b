#include "tests/support/ServerResources.h"

#include <xcb/res.h>

#include "tests/support/ClientsOfProcess.h"

namespace vistrel::testbed {
namespace {

std::string nameOf(const XConnection& connection, xcb_atom_t atom) {
  const XReply<xcb_get_atom_name_reply_t> reply(xcb_get_atom_name_reply(
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

ServerResources resourcesOf(const XConnection& connection, std::uint32_t idBase) {
  auto* const xcb = connection.get();
  constexpr xcb_res_resource_id_spec_t everything{XCB_NONE, XCB_ATOM_NONE};
  const XReply<xcb_res_query_resource_bytes_reply_t> reply(xcb_res_query_resource_bytes_reply(
      xcb, xcb_res_query_resource_bytes(xcb, idBase, 1, &everything), nullptr));
  ServerResources resources;
  if (!reply) return resources;
  std::map<xcb_atom_t, std::uint32_t> counts;
  const auto pixmap = connection.atom("PIXMAP");
  for (auto each = xcb_res_query_resource_bytes_sizes_iterator(reply.get()); each.rem > 0;
       xcb_res_resource_size_value_next(&each)) {
    const auto& size = each.data->size;
    ++counts[size.spec.type];
    // Not the client's share of it (QueryClientPixmapBytes): the server itself refers to a window's
    // background now and then, by the graphics context with which it last painted one.
    if (size.spec.type == pixmap) resources.pixmapBytes += size.bytes;
  }
  for (const auto& [type, count] : counts) resources.counts[nameOf(connection, type)] = count;
  return resources;
}

ServerResources resourcesOfProcess(const XConnection& connection, pid_t process) {
  ServerResources all;
  for (const auto client : clientsOfProcess(connection, process)) {
    const auto resources = resourcesOf(connection, client);
    for (const auto& [type, count] : resources.counts) all.counts[type] += count;
    all.pixmapBytes += resources.pixmapBytes;
  }
  return all;
}

}  // namespace vistrel::testbed
