#pragma once

#include <functional>
#include <memory>

#include "platform/Backend.h"
#include "platform/Dispatch.h"

namespace vistrel::platform::simulated {

/// A queue that can also be handed blocks for later, as the capture service needs.
class SimulatedQueue : public DispatchQueue {
 public:
  /// Any thread.
  virtual void asyncAfter(double seconds, Block block) = 0;
};

/// Queues, timers and the clock under a test's control; the main thread is the one that made it.
class SimulatedDispatch : public DispatchBackend {
 public:
  /// Where the capture service answers: never the main queue.
  virtual SimulatedQueue& serviceQueue() = 0;

  /// Runs what is ready on the main queue, and what that makes ready. Moves no time. Main thread.
  virtual void turnMainQueue() = 0;
  /// Turns the main queue until `condition` holds; false when it still does not after `seconds`.
  /// Main thread.
  virtual bool turnMainUntil(const std::function<bool()>& condition, double seconds) = 0;
  /// Runs everything handed in on any queue until nothing is left. Timers and delayed calls of the
  /// main queue that are not due are dropped. Main thread.
  virtual void drain() = 0;

  std::shared_ptr<Timer> scheduledTimer(double seconds, bool repeats, Block block) override;
};

}  // namespace vistrel::platform::simulated
