#include "platform/linux/x11/server/Property.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// Far more than any client list or title needs, in units of four bytes.
constexpr std::uint32_t longestProperty = 1 << 16;

}  // namespace

std::vector<std::uint32_t> Property::values() const {
  if (!hasValues()) return {};
  const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply_.get()));
  return {first, first + reply_->value_len};
}

std::optional<std::uint32_t> Property::firstValue() const {
  const auto all = values();
  return all.empty() ? std::nullopt : std::optional(all.front());
}

std::string_view Property::bytes() const {
  if (!hasBytes()) return {};
  return {static_cast<const char*>(xcb_get_property_value(reply_.get())), reply_->value_len};
}

PropertyRequest::PropertyRequest(Connection& connection, xcb_window_t window, std::string_view name)
    : pending_(connection.xcb(),
               xcb_get_property(connection.xcb(), 0, window, connection.atom(name),
                                XCB_GET_PROPERTY_TYPE_ANY, 0, longestProperty)) {}

Property propertyOf(Connection& connection, xcb_window_t window, std::string_view name) {
  return PropertyRequest(connection, window, name).fetch();
}

}  // namespace vistrel::platform::linux_desktop
