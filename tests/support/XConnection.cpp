#include "tests/support/XConnection.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <stdexcept>

namespace vistrel::testbed {
namespace {

// Longer than any property that a test reads, in 32-bit units.
constexpr std::uint32_t propertyLength = 1 << 16;

XReply<xcb_get_property_reply_t> property(const XConnection& connection, xcb_window_t window,
                                          std::string_view name) {
  return XReply<xcb_get_property_reply_t>(
      xcb_get_property_reply(connection.get(),
                             xcb_get_property(connection.get(), 0, window, connection.atom(name),
                                              XCB_ATOM_ANY, 0, propertyLength),
                             nullptr));
}

// Private displays want no authority. libXau, asked for one, would use static memory that the
// backend may be using on another thread.
xcb_connection_t* connectWithoutAuthority(const std::string& display) {
  xcb_auth_info_t none{};
  return xcb_connect_to_display_with_auth_info(display.c_str(), &none, nullptr);
}

}  // namespace

XConnection::XConnection(const std::string& display)
    : connection_(connectWithoutAuthority(display)) {
  if (xcb_connection_has_error(connection_) != 0) {
    xcb_disconnect(connection_);
    throw std::runtime_error("no connection to display " + display);
  }
  screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
}

XConnection::~XConnection() { xcb_disconnect(connection_); }

xcb_atom_t XConnection::atom(std::string_view name) const {
  const XReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
      connection_,
      xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()),
      nullptr));
  return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

void XConnection::sync() const {
  const XReply<xcb_get_input_focus_reply_t> reply(
      xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

std::vector<std::uint32_t> XConnection::numbers(xcb_window_t window, std::string_view name) const {
  const auto reply = property(*this, window, name);
  if (!reply || reply->format != 32) {
    return {};
  }
  const auto* values = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
  return {values, values + reply->value_len};
}

std::string XConnection::text(xcb_window_t window, std::string_view name) const {
  const auto reply = property(*this, window, name);
  if (!reply || reply->format != 8) {
    return {};
  }
  return {static_cast<const char*>(xcb_get_property_value(reply.get())), reply->value_len};
}

void XConnection::setNumbers(xcb_window_t window, std::string_view name, xcb_atom_t type,
                             const std::vector<std::uint32_t>& values) const {
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom(name), type, 32,
                      static_cast<std::uint32_t>(values.size()), values.data());
}

void XConnection::setText(xcb_window_t window, std::string_view name, xcb_atom_t type,
                          std::string_view value) const {
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom(name), type, 8,
                      static_cast<std::uint32_t>(value.size()), value.data());
}

void XConnection::sendToManager(xcb_window_t window, std::string_view message,
                                const std::vector<std::uint32_t>& data) const {
  send(root(), window, message, data,
       XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
}

void XConnection::send(xcb_window_t destination, xcb_window_t window, std::string_view message,
                       const std::vector<std::uint32_t>& data, std::uint32_t eventMask) const {
  xcb_client_message_event_t event{};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 32;
  event.window = window;
  event.type = atom(message);
  std::copy_n(data.begin(), std::min<std::size_t>(data.size(), 5), event.data.data32);
  // XCB sends 32 bytes whatever the event's kind.
  static_assert(sizeof(event) == 32);
  std::array<char, 32> bytes{};
  std::memcpy(bytes.data(), &event, sizeof(event));
  xcb_send_event(connection_, 0, destination, eventMask, bytes.data());
  sync();
}

}  // namespace vistrel::testbed
