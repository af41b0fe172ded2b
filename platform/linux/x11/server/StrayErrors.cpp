#include "platform/linux/x11/server/StrayErrors.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <unistd.h>

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

bool isToBeWritten() {
#ifdef NDEBUG
  static const bool isWanted = std::getenv("VISTREL_X_ERRORS") != nullptr;
  return isWanted;
#else
  return true;
#endif
}

}  // namespace

void reportStrayError(const xcb_generic_error_t& error) {
  const auto description = descriptionOf(error);
  {
    const std::lock_guard lock(mutex);
    ++soFar.count;
    soFar.last = description;
  }
  if (!isToBeWritten()) return;
  const auto line = "vistrel: the display server reports " + description + "\n";
  // Nothing is left to do about a line that cannot be written.
  [[maybe_unused]] const auto written = write(STDERR_FILENO, line.data(), line.size());
}

StrayErrors strayErrors() {
  const std::lock_guard lock(mutex);
  return soFar;
}

}  // namespace vistrel::platform::linux_desktop
