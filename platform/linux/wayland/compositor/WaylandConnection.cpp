#include "platform/linux/wayland/compositor/WaylandConnection.h"

#include <algorithm>
#include <poll.h>

namespace vistrel::platform::linux_desktop {

std::unique_ptr<WaylandConnection> WaylandConnection::open() {
  wl_display* const display = wl_display_connect(nullptr);
  if (display == nullptr) return nullptr;
  auto connection = std::unique_ptr<WaylandConnection>(new WaylandConnection(display));
  connection->sync();
  return connection->isLost() ? nullptr : std::move(connection);
}

WaylandConnection::WaylandConnection(wl_display* display)
    : display_(display), registry_(wl_display_get_registry(display)) {
  static constexpr wl_registry_listener listener{
      [](void* self, wl_registry*, std::uint32_t name, const char* interface,
         std::uint32_t version) {
        static_cast<WaylandConnection*>(self)->globals_[interface] = {name, version};
      },
      [](void* self, wl_registry*, std::uint32_t name) {
        std::erase_if(static_cast<WaylandConnection*>(self)->globals_,
                      [&](const auto& each) { return each.second.name == name; });
      }};
  wl_registry_add_listener(registry_, &listener, this);
}

WaylandConnection::~WaylandConnection() { wl_registry_destroy(registry_); }

std::uint32_t WaylandConnection::versionOf(std::string_view interface) const {
  const auto found = globals_.find(interface);
  return found == globals_.end() ? 0 : found->second.version;
}

void* WaylandConnection::bindGlobal(const wl_interface& interface, std::uint32_t newestKnown) {
  const auto found = globals_.find(interface.name);
  if (found == globals_.end()) return nullptr;
  const auto& [name, version] = found->second;
  return wl_registry_bind(registry_, name, &interface, std::min(version, newestKnown));
}

void WaylandConnection::serve() {
  while (wl_display_prepare_read(display()) != 0) {
    // What has come before an error stays where it is.
    if (wl_display_dispatch_pending(display()) < 0) return;
  }
  wl_display_flush(display());
  pollfd arrived{.fd = descriptor(), .events = POLLIN, .revents = 0};
  if (poll(&arrived, 1, 0) > 0) {
    wl_display_read_events(display());
  } else {
    wl_display_cancel_read(display());
  }
  wl_display_dispatch_pending(display());
  wl_display_flush(display());
}

void WaylandConnection::sync() { wl_display_roundtrip(display()); }

}  // namespace vistrel::platform::linux_desktop
