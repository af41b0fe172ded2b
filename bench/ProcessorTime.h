#pragma once

#include <sys/types.h>

namespace vistrel::bench {

/// Seconds of processor time that all threads of the process have used so far. Throws
/// std::runtime_error when it is gone.
double processorSeconds(pid_t pid);

}  // namespace vistrel::bench
