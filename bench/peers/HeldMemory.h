#pragma once

#include <cstdint>
#include <sys/types.h>

#include "tests/support/XConnection.h"

namespace vistrel::bench {

/// Memory that the process has written and shares with nobody, in bytes: what is mapped from files
/// counts or not by who else runs. Throws std::runtime_error when it is gone.
std::uint64_t ownBytes(pid_t pid);

/// What the server holds in pixmaps for all connections of the process, in bytes, as it says itself
/// (X-Resource 1.2); what several hold together counts for each in part.
std::uint64_t pixmapBytes(const testbed::XConnection& connection, pid_t pid);

}  // namespace vistrel::bench
