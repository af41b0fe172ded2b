#pragma once

#include <cstdint>
#include <utility>
#include <xcb/composite.h>
#include <xcb/damage.h>
#include <xcb/render.h>
#include <xcb/xcb.h>
#include <xcb/xfixes.h>

#include "platform/linux/XcbRequests.h"

namespace vistrel::platform::linux_desktop {

/// Owns one object of the display server, which `Release` frees. Lives on its connection's queue
/// and not longer than the connection.
template <auto Release>
class Resource {
 public:
  Resource() = default;
  /// Takes a fresh id on `connection`; the object is made by a request with that id.
  explicit Resource(xcb_connection_t* connection)
      : connection_(connection), id_(xcb_generate_id(connection)) {}
  Resource(Resource&& other) noexcept
      : connection_(other.connection_), id_(std::exchange(other.id_, XCB_NONE)) {}
  Resource& operator=(Resource&& other) noexcept {
    std::swap(connection_, other.connection_);
    std::swap(id_, other.id_);
    return *this;
  }
  ~Resource() {
    if (id_ != XCB_NONE) Release(connection_, id_);
  }

  std::uint32_t id() const { return id_; }
  /// There is no such object: the request that was to make it has failed.
  void abandon() { id_ = XCB_NONE; }
  explicit operator bool() const { return id_ != XCB_NONE; }

 private:
  xcb_connection_t* connection_ = nullptr;
  std::uint32_t id_ = XCB_NONE;
};

/// A window takes its damage object along when it goes.
inline void destroyDamage(xcb_connection_t* connection, xcb_damage_damage_t damage) {
  forgive(connection, xcb_damage_destroy_checked(connection, damage));
}

using Damage = Resource<destroyDamage>;
using GContext = Resource<xcb_free_gc>;
using OwnWindow = Resource<xcb_destroy_window>;
using Picture = Resource<xcb_render_free_picture>;
using Pixmap = Resource<xcb_free_pixmap>;
using Region = Resource<xcb_xfixes_destroy_region>;

}  // namespace vistrel::platform::linux_desktop
