#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/XcbRequests.h"
#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// A window's property as it was when it was asked for; absent when the window has none or is gone.
class Property {
 public:
  explicit Property(XcbPointer<xcb_get_property_reply_t> reply) : reply_(std::move(reply)) {}

  xcb_atom_t type() const { return reply_ ? reply_->type : static_cast<xcb_atom_t>(XCB_ATOM_NONE); }
  bool exists() const { return type() != XCB_ATOM_NONE; }
  /// Whether it is made of 32-bit values, or of bytes. Any client may have set anything.
  bool hasValues() const { return reply_ && reply_->format == 32; }
  bool hasBytes() const { return reply_ && reply_->format == 8; }
  /// The 32-bit values; empty for properties of another format.
  std::vector<std::uint32_t> values() const;
  std::optional<std::uint32_t> firstValue() const;
  /// The bytes of an 8-bit property; empty for others.
  std::string_view bytes() const;

 private:
  XcbPointer<xcb_get_property_reply_t> reply_;
};

/// A property that has been asked for and is yet to be read.
class PropertyRequest {
 public:
  PropertyRequest(Connection& connection, xcb_window_t window, std::string_view name);
  Property fetch() { return Property(pending_.fetch()); }

 private:
  Pending<xcb_get_property_reply, xcb_get_property_cookie_t> pending_;
};

Property propertyOf(Connection& connection, xcb_window_t window, std::string_view name);

}  // namespace vistrel::platform::linux_desktop
