#pragma once

#include <cstddef>
#include <sys/resource.h>
#include <sys/types.h>

namespace vistrel::testbed {

/// For as long as this lives a process gets that many bytes of memory more and no others.
class LittleMemory {
 public:
  LittleMemory(pid_t process, std::size_t bytesLeft);
  LittleMemory(const LittleMemory&) = delete;
  LittleMemory& operator=(const LittleMemory&) = delete;
  ~LittleMemory();

 private:
  const pid_t process_;
  rlimit former_{};
};

}  // namespace vistrel::testbed
