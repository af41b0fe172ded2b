#include "platform/linux/x11/server/StrayErrors.h"

#include <array>
#include <cstdio>
#include <mutex>

#include "platform/linux/Trace.h"

namespace vistrel::platform::linux_desktop {
namespace {

std::mutex mutex;
StrayErrors soFar;  // guarded by mutex

std::string descriptionOf(const xcb_generic_error_t& error) {
  std::array<char, 96> text{};
  std::snprintf(text.data(), text.size(), "error %u of request %u.%u about 0x%x",
                unsigned{error.error_code}, unsigned{error.major_code}, unsigned{error.minor_code},
                error.resource_id);
  return text.data();
}

}  // namespace

void reportStrayError(const xcb_generic_error_t& error) {
  const auto description = descriptionOf(error);
  {
    const std::lock_guard lock(mutex);
    if (++soFar.count == 1) soFar.first = description;
  }
  trace(TraceTopic::errors, [&] { return "the display server reports " + description; });
}

StrayErrors strayErrors() {
  const std::lock_guard lock(mutex);
  return soFar;
}

}  // namespace vistrel::platform::linux_desktop
