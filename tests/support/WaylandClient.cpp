#include "tests/support/WaylandClient.h"

namespace vistrel::testbed {

WaylandClient::WaylandClient(const char* name) : display_(wl_display_connect(name)) {
  if (display_ == nullptr) {
    throw std::runtime_error("no compositor answers");
  }
  static constexpr wl_registry_listener listener{
      [](void* self, wl_registry*, std::uint32_t number, const char* interface, std::uint32_t) {
        static_cast<WaylandClient*>(self)->names_[interface] = number;
      },
      [](void*, wl_registry*, std::uint32_t) {}};
  registry_ = wl_display_get_registry(display_);
  wl_registry_add_listener(registry_, &listener, this);
  sync();
}

WaylandClient::~WaylandClient() {
  wl_registry_destroy(registry_);
  wl_display_disconnect(display_);
}

void* WaylandClient::bindGlobal(const wl_interface& interface, std::uint32_t version) const {
  const auto found = names_.find(interface.name);
  if (found == names_.end()) {
    throw std::runtime_error(std::string("not offered: ") + interface.name);
  }
  return wl_registry_bind(registry_, found->second, &interface, version);
}

void WaylandClient::sync() const {
  if (wl_display_roundtrip(display_) < 0) {
    throw std::runtime_error("the compositor is gone");
  }
}

}  // namespace vistrel::testbed
