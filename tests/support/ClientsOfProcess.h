#pragma once

#include <cstdint>
#include <set>
#include <sys/types.h>

#include "tests/support/XConnection.h"

namespace vistrel::testbed {

/// The first resource id of each connection that the process has to the server (X-Resource 1.2,
/// QueryClientIds). Empty where the server does not tell.
std::set<std::uint32_t> clientsOfProcess(const XConnection& connection, pid_t process);

}  // namespace vistrel::testbed
