#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>
#include <xcb/xcb.h>

namespace vistrel::testbed {

/// Replies and errors of XCB are freed by the one who asked.
struct FreeReply {
  void operator()(void* reply) const { std::free(reply); }
};
template <class Reply>
using XReply = std::unique_ptr<Reply, FreeReply>;

/// One connection to a display server, as any program has. One thread.
class XConnection {
 public:
  /// `display` as in the environment variable DISPLAY. Throws std::runtime_error when the server
  /// cannot be reached.
  explicit XConnection(const std::string& display);
  ~XConnection();
  XConnection(const XConnection&) = delete;
  XConnection& operator=(const XConnection&) = delete;

  xcb_connection_t* get() const { return connection_; }
  const xcb_screen_t& screen() const { return *screen_; }
  xcb_window_t root() const { return screen_->root; }

  xcb_atom_t atom(std::string_view name) const;
  /// Returns once the server has carried out every request sent so far.
  void sync() const;

  /// A 32-bit property (CARDINAL, WINDOW, ATOM…); empty when the window has none, or is gone.
  std::vector<std::uint32_t> numbers(xcb_window_t window, std::string_view property) const;
  /// An 8-bit property (STRING, UTF8_STRING); empty when the window has none, or is gone.
  std::string text(xcb_window_t window, std::string_view property) const;
  void setNumbers(xcb_window_t window, std::string_view property, xcb_atom_t type,
                  const std::vector<std::uint32_t>& values) const;
  void setText(xcb_window_t window, std::string_view property, xcb_atom_t type,
               std::string_view value) const;
  /// A message for the window manager: format 32, to the root window (ICCCM 4.1.4, EWMH 1.5).
  void sendToManager(xcb_window_t window, std::string_view message,
                     const std::vector<std::uint32_t>& data) const;
  /// A message about `window` (format 32) for whoever listens to `destination` for one of these
  /// kinds of events; for whoever made that when there are none.
  void send(xcb_window_t destination, xcb_window_t window, std::string_view message,
            const std::vector<std::uint32_t>& data, std::uint32_t eventMask) const;

 private:
  xcb_connection_t* connection_;
  const xcb_screen_t* screen_ = nullptr;
};

}  // namespace vistrel::testbed
