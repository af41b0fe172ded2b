#include "platform/linux/x11/instance/StartupNotification.h"

#include <algorithm>
#include <charconv>
#include <string>
#include <system_error>

namespace vistrel::platform::linux_desktop {
namespace {

/// As the protocol wants values that may hold blanks.
std::string escaped(std::string_view value) {
  std::string text;
  for (const char c : value) {
    if (c == ' ' || c == '"' || c == '\\') text += '\\';
    text += c;
  }
  return text;
}

}  // namespace

std::optional<xcb_timestamp_t> timeOfStart(std::string_view startupID) {
  constexpr std::string_view mark = "_TIME";
  const auto found = startupID.rfind(mark);
  if (found == std::string_view::npos) return std::nullopt;
  const auto digits = startupID.substr(found + mark.size());
  xcb_timestamp_t time = XCB_CURRENT_TIME;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), time);
  const bool isTime = error == std::errc() && end == digits.data() + digits.size();
  return isTime && time != XCB_CURRENT_TIME ? std::optional(time) : std::nullopt;
}

void tellStartIsOver(Connection& connection, xcb_window_t sender, std::string_view startupID) {
  const std::string text = "remove: ID=" + escaped(startupID);
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 8;
  message.window = sender;
  message.type = connection.atom("_NET_STARTUP_INFO_BEGIN");
  // In pieces as long as a message holds; the zero behind the text goes along.
  constexpr std::size_t pieceLength = sizeof message.data.data8;
  for (std::size_t first = 0; first <= text.size(); first += pieceLength) {
    const auto piece = std::string_view(text).substr(first, pieceLength);
    std::fill_n(message.data.data8, pieceLength, std::uint8_t{0});
    std::copy(piece.begin(), piece.end(), message.data.data8);
    xcb_send_event(connection.xcb(), 0, connection.root(), XCB_EVENT_MASK_PROPERTY_CHANGE,
                   reinterpret_cast<const char*>(&message));
    message.type = connection.atom("_NET_STARTUP_INFO");
  }
  // The server drops what it has not read yet from a client that it finds gone.
  connection.sync();
}

}  // namespace vistrel::platform::linux_desktop
