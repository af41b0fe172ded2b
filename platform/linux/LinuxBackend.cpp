#include "platform/linux/LinuxBackend.h"

#include "platform/Factory.h"

namespace vistrel::platform {

BackendOrFailure makeBackend(int /*argc*/, char** argv) {
  using namespace linux_desktop;
  // Before the toolkit, which ends the process when it finds no display.
  auto [desktop, failure] = X11Desktop::connect();
  if (!desktop) return {nullptr, failure};
  auto toolkit = QtDesktop::start(argv[0], *desktop);
  return {std::make_unique<LinuxBackend>(std::move(desktop), std::move(toolkit)), {}};
}

}  // namespace vistrel::platform
