#include "bench/ProcessorTime.h"

#include <ctime>
#include <stdexcept>

namespace vistrel::bench {

double processorSeconds(pid_t pid) {
  clockid_t clock{};
  timespec time{};
  if (::clock_getcpuclockid(pid, &clock) != 0 || ::clock_gettime(clock, &time) != 0) {
    throw std::runtime_error("a measured process is gone");
  }
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

}  // namespace vistrel::bench
