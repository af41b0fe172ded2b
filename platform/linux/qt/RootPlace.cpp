#include "platform/linux/qt/RootPlace.h"

#include <QGuiApplication>
#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

namespace vistrel::platform::linux_desktop {

namespace {

template <class Reply>
using OwnedReply = std::unique_ptr<Reply, decltype(&std::free)>;

}  // namespace

std::optional<PixelRect> placeOnRoot(xcb_window_t window) {
  const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  if (x11 == nullptr) return std::nullopt;
  xcb_connection_t* connection = x11->connection();
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
