#include "platform/linux/LinuxBackend.h"

#include "platform/Factory.h"
#include "platform/linux/WithoutDisplay.h"

namespace vistrel::platform {

using namespace linux_desktop;

BackendOrFailure makeBackend(int /*argc*/, char** argv, Instances instances) {
  openMissingStandardStreams();
  // Before the toolkit, which ends the process when it finds no display.
  auto [desktop, failure] = X11Desktop::connect(instances);
  if (!desktop) return {nullptr, failure};
  auto backend = std::make_unique<LinuxBackend>(std::move(desktop), argv[0]);
  // The other parts of the backend are of use with the toolkit alone.
  backend->application();
  return {std::move(backend), {}};
}

std::unique_ptr<Backend> makeSelfTestBackend(int /*argc*/, char** argv) {
  openMissingStandardStreams();
  auto [desktop, failure] = X11Desktop::connect(Instances::any);
  if (!desktop) return makeBackendWithoutDisplay();
  return std::make_unique<LinuxBackend>(std::move(desktop), argv[0]);
}

}  // namespace vistrel::platform
