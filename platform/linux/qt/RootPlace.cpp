#include "platform/linux/qt/RootPlace.h"

#include "platform/linux/qt/ToolkitConnection.h"

namespace vistrel::platform::linux_desktop {

std::optional<PixelRect> placeOnRoot(xcb_window_t window) {
  xcb_connection_t* connection = toolkitConnection();
  if (connection == nullptr) return std::nullopt;
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
  const auto sizeRequest = xcb_get_geometry(connection, window);
  const auto placeRequest = xcb_translate_coordinates(connection, window, root, 0, 0);
  const OwnedReply<xcb_get_geometry_reply_t> size(
      xcb_get_geometry_reply(connection, sizeRequest, nullptr), &std::free);
  const OwnedReply<xcb_translate_coordinates_reply_t> place(
      xcb_translate_coordinates_reply(connection, placeRequest, nullptr), &std::free);
  if (!size || !place) return std::nullopt;
  return PixelRect{place->dst_x, place->dst_y, size->width, size->height};
}

}  // namespace vistrel::platform::linux_desktop
