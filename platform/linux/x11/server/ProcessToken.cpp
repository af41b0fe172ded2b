#include "platform/linux/x11/server/ProcessToken.h"

#include <random>

namespace vistrel::platform::linux_desktop {

std::uint32_t processToken() {
  static const std::uint32_t token = std::random_device()() | 1U;
  return token;
}

}  // namespace vistrel::platform::linux_desktop
