#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>
#include <xcb/xcb.h>

#include "platform/linux/XcbRequests.h"
#include "platform/linux/x11/server/Events.h"
#include "platform/linux/x11/server/PictureFormats.h"
#include "platform/linux/x11/server/PixelGeometry.h"

namespace vistrel::platform::linux_desktop {

/// What the display offers, and the numbers of the events that come with it.
struct Extensions {
  /// Composite 0.4, Damage 1.1, XFixes 2, RENDER 0.10: what capture is built of.
  bool offersCapture = false;
  /// What of that is not offered, with the version that there has to be.
  std::vector<std::string> missingForCapture;
  /// X-Resource 1.2: the process behind a window.
  bool offersClientIds = false;
  bool offersShapes = false;
  std::uint8_t shapeNotify = 0;
  std::uint8_t damageNotify = 0;
  std::uint8_t cursorNotify = 0;
  std::uint8_t selectionNotify = 0;
  /// 0 where MIT-SCREEN-SAVER is not offered.
  std::uint8_t screenSaverNotify = 0;
};

/// A connection to the display that DISPLAY names, with the extensions set up. Used on one thread
/// at a time.
class Connection {
 public:
  /// Null when the display refuses.
  static std::unique_ptr<Connection> open();

  xcb_connection_t* xcb() const { return connection_.get(); }
  xcb_window_t root() const { return screen_->root; }
  int screenNumber() const { return screenNumber_; }
  /// How large the screen said it was when the connection was opened.
  PixelSize screenMillimetres() const {
    return {screen_->width_in_millimeters, screen_->height_in_millimeters};
  }
  const Extensions& extensions() const { return extensions_; }
  const PictureFormats& formats() const { return formats_; }

  /// Interned at its first use.
  xcb_atom_t atom(std::string_view name);
  /// Whether the display server is gone, or has thrown this connection out.
  bool isLost() const { return xcb_connection_has_error(xcb()) != 0; }
  int descriptor() const { return xcb_get_file_descriptor(xcb()); }
  /// The next event that has arrived, null when there is none. Events that other clients made up
  /// (SendEvent) are left out, since what they tell need not be so; errors that nobody waited for
  /// are reported.
  XcbEvent pollEvent();
  /// Hands every event that has arrived to `handle`, and calls `proceed` once there are no more;
  /// both again as long as more come in meanwhile, with answers or while requests are written,
  /// since the descriptor would tell no more of those. Sends what was left to send.
  void serve(const std::function<void(const xcb_generic_event_t&)>& handle,
             const std::function<void()>& proceed = nullptr);
  /// Whether there is such an event among those that have been read, with answers, and are yet to
  /// be handed out.
  bool hasRead(const std::function<bool(const xcb_generic_event_t&)>& matches);
  void flush() { xcb_flush(xcb()); }
  /// Asks for those events of `window` and for no others. A checked request, since windows of other
  /// programs may have gone.
  xcb_void_cookie_t selectEvents(xcb_window_t window, std::uint32_t mask);
  /// Waits until the server has carried out everything sent so far.
  void sync();

 private:
  struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
  };

  Connection(xcb_connection_t* connection, int screenNumber);
  void setUpExtensions();
  /// As `pollEvent`, among those that have been read from the socket already.
  XcbEvent nextReadEvent();
  /// Among those that the library holds.
  XcbEvent nextHeldEvent();
  /// Whether an event is to be handed out; reports an error.
  static bool concernsUs(const xcb_generic_event_t& event);

  std::unique_ptr<xcb_connection_t, Disconnect> connection_;
  int screenNumber_;
  const xcb_screen_t* screen_ = nullptr;
  Extensions extensions_;
  PictureFormats formats_;
  std::map<std::string, xcb_atom_t, std::less<>> atoms_;
  std::deque<XcbEvent> lookedAt_;  // earlier than those that the library holds
};

}  // namespace vistrel::platform::linux_desktop
