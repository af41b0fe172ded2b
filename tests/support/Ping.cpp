#include "tests/support/Ping.h"

#include <algorithm>
#include <array>
#include <span>

#include "tests/support/Poll.h"

namespace vistrel::testbed {
namespace {

/// Takes in what has come. Whether it holds the answer, which holds all that the question held.
bool takesAnswer(const XConnection& connection, const std::array<std::uint32_t, 3>& question) {
  const xcb_atom_t protocols = connection.atom("WM_PROTOCOLS");
  while (const XReply<xcb_generic_event_t> event{xcb_poll_for_event(connection.get())}) {
    const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(*event);
    if ((event->response_type & 0x7f) == XCB_CLIENT_MESSAGE && message.type == protocols &&
        std::ranges::equal(question, std::span(message.data.data32).first<3>())) {
      return true;
    }
  }
  return false;
}

}  // namespace

bool takesPing(const XConnection& connection, xcb_window_t window) {
  const auto protocols = connection.numbers(window, "WM_PROTOCOLS");
  return std::ranges::find(protocols, connection.atom("_NET_WM_PING")) != protocols.end();
}

bool answersPing(const std::string& display, xcb_window_t window) {
  const XConnection connection(display);
  // Managers get the answer, by "substructure redirect"; one toolkit sends it for the other kind.
  constexpr std::uint32_t answersToRoot =
      XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  xcb_change_window_attributes(connection.get(), connection.root(), XCB_CW_EVENT_MASK,
                               &answersToRoot);
  // Managers ask too; theirs has the server's time in the middle.
  const std::array question{connection.atom("_NET_WM_PING"), connection.root(), window};
  connection.send(window, window, "WM_PROTOCOLS", {question.begin(), question.end()},
                  XCB_EVENT_MASK_NO_EVENT);
  bool isAnswered = false;
  return eventually([&] {
           isAnswered = takesAnswer(connection, question);
           return isAnswered || !takesPing(connection, window);
         }) &&
         isAnswered;
}

}  // namespace vistrel::testbed
