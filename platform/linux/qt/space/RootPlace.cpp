#include "platform/linux/qt/space/RootPlace.h"

#include "platform/linux/WindowPlace.h"
#include "platform/linux/qt/space/QtConnection.h"

namespace vistrel::platform::linux_desktop {

std::optional<PixelRect> placeOnRoot(xcb_window_t window) {
  xcb_connection_t* connection = qtConnection();
  if (connection == nullptr) return std::nullopt;
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
  return placeIn(connection, window, root);
}

}  // namespace vistrel::platform::linux_desktop
