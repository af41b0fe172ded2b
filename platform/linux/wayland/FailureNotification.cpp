#include <string>
#include <systemd/sd-bus.h>

#include "platform/linux/wayland/WaylandSession.h"

namespace {

constexpr const char* advice =
    "Vistrel's panels are windows of X, which this session shows by XWayland, and that does not "
    "answer. Install or turn on XWayland (on Debian the package xwayland), log in anew, and start "
    "Vistrel again.";

}  // namespace

// Desktop Notifications Specification 1.2.
void vistrelNotifyOfFailure(const char* failure) {
  sd_bus* bus = nullptr;
  if (sd_bus_open_user(&bus) < 0) return;
  const std::string body = std::string(advice) + " (" + failure + ")";
  constexpr const char* service = "org.freedesktop.Notifications";
  constexpr int asLongAsTheDesktopLikes = -1;
  sd_bus_call_method(bus, service, "/org/freedesktop/Notifications", service, "Notify", nullptr,
                     nullptr, "susssasa{sv}i", "Vistrel", 0, "vistrel", "Vistrel cannot start",
                     body.c_str(), 0, 0, asLongAsTheDesktopLikes);
  sd_bus_flush_close_unref(bus);
}
