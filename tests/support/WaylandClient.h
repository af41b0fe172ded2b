#pragma once

#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <wayland-client.h>

namespace vistrel::testbed {

/// One connection to a compositor, as any program has. One thread.
class WaylandClient {
 public:
  /// `name` as in WAYLAND_DISPLAY, or a path; null: that of the environment. Throws
  /// std::runtime_error when the compositor cannot be reached.
  explicit WaylandClient(const char* name = nullptr);
  ~WaylandClient();
  WaylandClient(const WaylandClient&) = delete;
  WaylandClient& operator=(const WaylandClient&) = delete;

  wl_display* display() const { return display_; }
  /// At `version`, which has to be offered. Throws std::runtime_error where it is not.
  template <class Proxy>
  Proxy* bind(const wl_interface& interface, std::uint32_t version) const {
    return static_cast<Proxy*>(bindGlobal(interface, version));
  }
  bool isOffered(const wl_interface& interface) const { return names_.contains(interface.name); }
  /// Returns once the compositor has dealt with every request sent so far.
  void sync() const;

 private:
  void* bindGlobal(const wl_interface& interface, std::uint32_t version) const;

  wl_display* display_;
  wl_registry* registry_ = nullptr;
  std::map<std::string, std::uint32_t> names_;
};

}  // namespace vistrel::testbed
