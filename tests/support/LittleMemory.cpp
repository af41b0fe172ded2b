#include "tests/support/LittleMemory.h"

#include <fstream>
#include <string>
#include <unistd.h>

namespace vistrel::testbed {

LittleMemory::LittleMemory(pid_t process, std::size_t bytesLeft) : process_(process) {
  prlimit(process_, RLIMIT_AS, nullptr, &former_);
  rlim_t pages = 0;
  std::ifstream("/proc/" + std::to_string(process_) + "/statm") >> pages;
  const rlim_t bytes = pages * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE)) + bytesLeft;
  const rlimit limit{bytes, former_.rlim_max};
  prlimit(process_, RLIMIT_AS, &limit, nullptr);
}

LittleMemory::~LittleMemory() { prlimit(process_, RLIMIT_AS, &former_, nullptr); }

}  // namespace vistrel::testbed
