#pragma once

#include <cstdlib>
#include <string>

namespace vistrel::platform::linux_desktop {

/// A variable of the process's environment; empty where it is not set.
inline std::string environmentVariable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

}  // namespace vistrel::platform::linux_desktop
