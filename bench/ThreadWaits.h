#pragma once

#include <map>
#include <string>
#include <sys/types.h>

namespace vistrel::bench {

/// How often the threads of the process have waited for something so far, by their names; those of
/// one name together. Throws std::runtime_error when it is gone.
std::map<std::string, long> threadWaits(pid_t pid);

}  // namespace vistrel::bench
