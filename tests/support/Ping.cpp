#include "tests/support/Ping.h"

#include "tests/support/Poll.h"

namespace vistrel::testbed {

bool answersPing(const std::string& display, xcb_window_t window) {
  const XConnection connection(display);
  const xcb_atom_t protocols = connection.atom("WM_PROTOCOLS");
  const xcb_atom_t ping = connection.atom("_NET_WM_PING");
  // Managers get the answer, by "substructure redirect"; one toolkit sends it for the other kind.
  constexpr std::uint32_t answersToRoot =
      XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  xcb_change_window_attributes(connection.get(), connection.root(), XCB_CW_EVENT_MASK,
                               &answersToRoot);
  // Managers ask too. Their messages hold the server's time here.
  const std::uint32_t ours = connection.root();
  connection.send(window, window, "WM_PROTOCOLS", {ping, ours, window}, XCB_EVENT_MASK_NO_EVENT);
  return eventually([&] {
    while (const XReply<xcb_generic_event_t> event{xcb_poll_for_event(connection.get())}) {
      if ((event->response_type & 0x7f) != XCB_CLIENT_MESSAGE) {
        continue;
      }
      const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(*event);
      const auto& data = message.data.data32;
      if (message.type == protocols && data[0] == ping && data[1] == ours && data[2] == window) {
        return true;
      }
    }
    return false;
  });
}

}  // namespace vistrel::testbed
