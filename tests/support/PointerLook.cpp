#include "tests/support/PointerLook.h"

#include <xcb/xfixes.h>

namespace vistrel::testbed {

std::vector<std::uint32_t> pointerLook(const XConnection& connection) {
  // The extension answers only clients that have told it their version.
  const XReply<xcb_xfixes_query_version_reply_t> version(xcb_xfixes_query_version_reply(
      connection.get(),
      xcb_xfixes_query_version(connection.get(), XCB_XFIXES_MAJOR_VERSION,
                               XCB_XFIXES_MINOR_VERSION),
      nullptr));
  const XReply<xcb_xfixes_get_cursor_image_reply_t> reply(xcb_xfixes_get_cursor_image_reply(
      connection.get(), xcb_xfixes_get_cursor_image(connection.get()), nullptr));
  if (!reply) {
    return {};
  }
  const std::uint32_t* pixels = xcb_xfixes_get_cursor_image_cursor_image(reply.get());
  return {pixels, pixels + xcb_xfixes_get_cursor_image_cursor_image_length(reply.get())};
}

}  // namespace vistrel::testbed
