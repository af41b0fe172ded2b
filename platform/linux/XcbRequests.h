#pragma once

#include <cstdint>
#include <optional>
#include <type_traits>
#include <utility>
#include <xcb/xcb.h>

#include "platform/linux/XcbPointer.h"

namespace vistrel::platform::linux_desktop {

/// The answer to a request, null when it failed. An error is taken in with it.
template <auto Fetch, class Cookie>
auto replyTo(xcb_connection_t* connection, Cookie cookie) {
  return XcbPointer<std::remove_pointer_t<decltype(Fetch(connection, cookie, nullptr))>>(
      Fetch(connection, cookie, nullptr));
}

/// A request whose answer is fetched later, so that several can be under way at once. An answer
/// that nobody fetches is discarded.
template <auto Fetch, class Cookie>
class Pending {
 public:
  Pending(xcb_connection_t* connection, Cookie cookie) : connection_(connection), cookie_(cookie) {}
  Pending(Pending&& other) noexcept
      : connection_(std::exchange(other.connection_, nullptr)), cookie_(other.cookie_) {}
  Pending& operator=(Pending&& other) = delete;
  ~Pending() {
    if (connection_) xcb_discard_reply(connection_, cookie_.sequence);
  }

  /// Once only.
  auto fetch() { return replyTo<Fetch>(std::exchange(connection_, nullptr), cookie_); }

 private:
  xcb_connection_t* connection_;
  Cookie cookie_;
};

/// Waits for a checked request; the error's code when it failed.
inline std::optional<std::uint8_t> failureOf(xcb_connection_t* connection,
                                             xcb_void_cookie_t cookie) {
  const XcbPointer<xcb_generic_error_t> error(xcb_request_check(connection, cookie));
  return error ? std::optional(error->error_code) : std::nullopt;
}

/// Takes in the error of a checked request, if there comes one, without waiting for it. For
/// requests about windows of other programs, which may go at any time.
inline void forgive(xcb_connection_t* connection, xcb_void_cookie_t cookie) {
  xcb_discard_reply(connection, cookie.sequence);
}

}  // namespace vistrel::platform::linux_desktop
