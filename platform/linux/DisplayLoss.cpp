#include "platform/linux/DisplayLoss.h"

#include <atomic>
#include <string>
#include <unistd.h>

#include "platform/linux/Environment.h"

namespace vistrel::platform::linux_desktop {

void endProgramDisplayLost() {
  static std::atomic<bool> isEnding = false;
  // Whoever comes second must not cut the first one short.
  while (isEnding.exchange(true)) pause();
  const std::string line =
      "vistrel: the connection to display \"" + environmentVariable("DISPLAY") + "\" was lost\n";
  // Nothing is left to do about a line that cannot be written.
  [[maybe_unused]] const auto written = write(STDERR_FILENO, line.data(), line.size());
  _exit(1);
}

}  // namespace vistrel::platform::linux_desktop
