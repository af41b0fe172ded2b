#pragma once

#include <cstdlib>
#include <memory>

namespace vistrel::platform::linux_desktop {

struct FreeDeleter {
  void operator()(void* memory) const { std::free(memory); }
};

/// What libxcb hands out to be released with free().
template <class T>
using XcbPointer = std::unique_ptr<T, FreeDeleter>;

}  // namespace vistrel::platform::linux_desktop
