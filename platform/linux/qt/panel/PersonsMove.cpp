#include "platform/linux/qt/panel/PersonsMove.h"

#include <cstdint>
#include <string_view>

#include "platform/linux/XcbRequests.h"
#include "platform/linux/qt/space/QtConnection.h"

namespace vistrel::platform::linux_desktop {
namespace {

xcb_atom_t atomOf(xcb_connection_t* connection, std::string_view name) {
  const auto reply = replyTo<xcb_intern_atom_reply>(
      connection,
      xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data()));
  return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

}  // namespace

void moveAsPerson(xcb_window_t window, const QPoint& origin) {
  auto* const connection = qtConnection();
  if (connection == nullptr) return;
  static const xcb_atom_t moveResize = atomOf(connection, "_NET_MOVERESIZE_WINDOW");
  static const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
  // EWMH: place alone, from a tool of the person's.
  constexpr std::uint32_t placeAlone = 0x3 << 8;
  constexpr std::uint32_t byPerson = 2 << 12;
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window;
  message.type = moveResize;
  message.data.data32[0] = XCB_GRAVITY_STATIC | placeAlone | byPerson;
  message.data.data32[1] = static_cast<std::uint32_t>(origin.x());
  message.data.data32[2] = static_cast<std::uint32_t>(origin.y());
  xcb_send_event(connection, 0, root,
                 XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&message));
  xcb_flush(connection);
}

}  // namespace vistrel::platform::linux_desktop
