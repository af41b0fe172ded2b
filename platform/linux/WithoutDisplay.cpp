#include "platform/linux/WithoutDisplay.h"

#include <cstdlib>

#include "platform/WithoutDesktop.h"
#include "platform/linux/SerialQueue.h"
#include "platform/linux/StandardError.h"

namespace vistrel::platform::linux_desktop {

namespace {

/// A clock and nothing else.
class Clock final : public DispatchBackend {
 public:
  Date now() override { return {monotonicNow()}; }
  DispatchQueue& mainQueue() override { std::abort(); }
  void mainAsyncAfter(double, Block) override { std::abort(); }
  std::shared_ptr<DispatchQueue> makeSerialQueue(std::string, QualityOfService) override {
    std::abort();
  }
  std::shared_ptr<Timer> scheduledTimer(double, bool, Block) override { std::abort(); }
  std::shared_ptr<Semaphore> makeSemaphore(int) override { std::abort(); }
};

/// The classes are the display server's.
class NoVirtualDisplays final : public VirtualDisplayBackend {
 public:
  std::shared_ptr<RuntimeClass> classNamed(const std::string&) override { return nullptr; }
};

}  // namespace

std::unique_ptr<Backend> makeBackendWithoutDisplay() {
  return makeBackendWithoutDesktop(std::make_unique<Clock>(), std::make_unique<NoVirtualDisplays>(),
                                   std::make_unique<StandardError>());
}

}  // namespace vistrel::platform::linux_desktop
