#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <wayland-client.h>

namespace vistrel::platform::linux_desktop {

/// A connection to the compositor that WAYLAND_DISPLAY names. Used on one thread at a time.
class WaylandConnection {
 public:
  /// Null when no compositor answers.
  static std::unique_ptr<WaylandConnection> open();
  WaylandConnection(const WaylandConnection&) = delete;
  WaylandConnection& operator=(const WaylandConnection&) = delete;
  ~WaylandConnection();

  wl_display* display() const { return display_.get(); }
  /// The version of an interface that is offered to this program; 0 when it is not.
  std::uint32_t versionOf(std::string_view interface) const;
  /// A new object of the newest version of `interface` that both sides know, ours being
  /// `newestKnown`; null when it is not offered.
  template <class Proxy>
  Proxy* bind(const wl_interface& interface, std::uint32_t newestKnown) {
    return static_cast<Proxy*>(bindGlobal(interface, newestKnown));
  }

  /// Whether the compositor is gone, or has thrown this connection out.
  bool isLost() const { return wl_display_get_error(display()) != 0; }
  int descriptor() const { return wl_display_get_fd(display()); }
  /// Tells listeners everything that has arrived, without waiting, and sends what was left to send.
  void serve();
  /// Waits until the compositor has dealt with everything sent so far, and tells listeners
  /// everything that it has answered.
  void sync();

 private:
  struct Disconnect {
    void operator()(wl_display* display) const { wl_display_disconnect(display); }
  };
  struct Global {
    std::uint32_t name = 0;
    std::uint32_t version = 0;
  };

  explicit WaylandConnection(wl_display* display);
  void* bindGlobal(const wl_interface& interface, std::uint32_t newestKnown);

  std::unique_ptr<wl_display, Disconnect> display_;
  wl_registry* registry_ = nullptr;
  std::map<std::string, Global, std::less<>> globals_;
};

}  // namespace vistrel::platform::linux_desktop
