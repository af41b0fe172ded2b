#include "platform/linux/WindowPlace.h"

#include "platform/linux/XcbRequests.h"

namespace vistrel::platform::linux_desktop {

std::optional<PixelRect> placeIn(xcb_connection_t* connection, xcb_window_t window,
                                 xcb_window_t reference) {
  const auto sizeRequest = xcb_get_geometry(connection, window);
  const auto placeRequest = xcb_translate_coordinates(connection, window, reference, 0, 0);
  const auto size = replyTo<xcb_get_geometry_reply>(connection, sizeRequest);
  const auto place = replyTo<xcb_translate_coordinates_reply>(connection, placeRequest);
  if (!size || !place) return std::nullopt;
  return PixelRect{place->dst_x, place->dst_y, size->width, size->height};
}

}  // namespace vistrel::platform::linux_desktop
