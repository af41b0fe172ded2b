#pragma once

#include <cstddef>
#include <sys/types.h>

namespace vistrel::testbed {

/// How many descriptors the process has open. Throws std::filesystem::filesystem_error when it is
/// gone.
std::size_t openDescriptors(pid_t process);
/// How many threads it has; likewise.
std::size_t threadCount(pid_t process);

}  // namespace vistrel::testbed
