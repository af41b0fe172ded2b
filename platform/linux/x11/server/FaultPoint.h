#pragma once

// A step of what must not be lost when the program is killed. Where tests are built with
// VISTREL_FAULT_POINTS, the process can be made to die right there, once the server has carried out
// what it was sent; anywhere else it is nothing.
#ifdef VISTREL_FAULT_POINTS

#include <string_view>

#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// The test's own.
void passFaultPoint(Connection& connection, std::string_view name);

}  // namespace vistrel::platform::linux_desktop

#define VISTREL_FAULT_POINT(connection, name) \
  ::vistrel::platform::linux_desktop::passFaultPoint(connection, name)

#else

#define VISTREL_FAULT_POINT(connection, name) static_cast<void>(0)

#endif
