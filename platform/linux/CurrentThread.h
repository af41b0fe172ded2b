#pragma once

#include <thread>
#include <unistd.h>

namespace vistrel::platform::linux_desktop {

// For assertions.

/// Whether this is the process's first thread, on which the toolkit and all that a person sees
/// live.
inline bool isMainThread() { return gettid() == getpid(); }

/// The thread that an object was made on, for one that lives there.
class OwnThread {
 public:
  bool isCurrent() const { return thread_ == std::this_thread::get_id(); }

 private:
  const std::thread::id thread_ = std::this_thread::get_id();
};

}  // namespace vistrel::platform::linux_desktop
