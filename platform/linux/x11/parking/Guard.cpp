#include "platform/linux/x11/parking/Guard.h"

#include <string>

#include "platform/linux/Companions.h"
#include "platform/linux/DetachedProgram.h"
#include "platform/linux/Trace.h"

namespace vistrel::platform::linux_desktop {

void startGuard(const OwnerId& owner) {
  const auto program = companion("vistrel-guard", VISTREL_INSTALLED_GUARD);
  if (program.empty()) {
    return trace(TraceTopic::manager, [] { return "no guard of parked windows is installed"; });
  }
  if (!startDetached(program, {std::to_string(owner.window), std::to_string(owner.token)})) {
    trace(TraceTopic::manager, [] { return "the guard of parked windows does not start"; });
  }
}

}  // namespace vistrel::platform::linux_desktop
