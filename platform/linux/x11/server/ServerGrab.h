#pragma once

#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// Keeps the display server from serving anybody else while it lives: nobody sees or changes what
/// is half done. Nothing may be waited for meanwhile but the server's own answers.
class ServerGrab {
 public:
  explicit ServerGrab(Connection& connection) : connection_(connection) {
    xcb_grab_server(connection_.xcb());
  }
  ServerGrab(const ServerGrab&) = delete;
  ServerGrab& operator=(const ServerGrab&) = delete;
  ~ServerGrab() {
    xcb_ungrab_server(connection_.xcb());
    connection_.flush();
  }

 private:
  Connection& connection_;
};

}  // namespace vistrel::platform::linux_desktop
