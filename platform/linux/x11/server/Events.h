#pragma once

#include <cstdint>
#include <xcb/xcb.h>

#include "platform/linux/XcbPointer.h"

namespace vistrel::platform::linux_desktop {

/// What the display server tells without being asked; also an error that nobody waits for.
using XcbEvent = XcbPointer<xcb_generic_event_t>;

inline std::uint8_t typeOf(const xcb_generic_event_t& event) { return event.response_type; }

template <class T>
const T& eventAs(const xcb_generic_event_t& event) {
  return reinterpret_cast<const T&>(event);
}

}  // namespace vistrel::platform::linux_desktop
