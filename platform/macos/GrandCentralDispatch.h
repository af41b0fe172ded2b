#pragma once

#import <dispatch/dispatch.h>
#include <memory>
#include <string>

#include "platform/Backend.h"

namespace vistrel::platform::macos {

/// The queue of the system that stands behind one of ours.
dispatch_queue_t systemQueue(const DispatchQueue& queue);

/// Queues, timers and semaphores of libdispatch and the main run loop.
class GrandCentralDispatch final : public DispatchBackend {
 public:
  GrandCentralDispatch();

  Date now() override;
  DispatchQueue& mainQueue() override { return *mainQueue_; }
  void mainAsyncAfter(double seconds, Block block) override;
  std::shared_ptr<DispatchQueue> makeSerialQueue(std::string label,
                                                 QualityOfService quality) override;
  std::shared_ptr<Timer> scheduledTimer(double seconds, bool repeats, Block block) override;
  std::shared_ptr<Semaphore> makeSemaphore(int value) override;

 private:
  std::unique_ptr<DispatchQueue> mainQueue_;
};

}  // namespace vistrel::platform::macos
