#pragma once

#include <QTimer>
#include <map>
#include <memory>

#include "platform/Dispatch.h"

namespace vistrel::platform::linux_desktop {

class RunLoopTimer;

/// The timers of the toolkit's loop, which it keeps alive. None fires earlier than asked. Those
/// that repeat fire at whole multiples of their interval, so all of one interval fire together and
/// many mirrors wake the main thread no more often than one does; the first firing is at most one
/// interval late for it. Main thread.
class RunLoopTimers {
 public:
  RunLoopTimers();
  RunLoopTimers(const RunLoopTimers&) = delete;
  RunLoopTimers& operator=(const RunLoopTimers&) = delete;
  ~RunLoopTimers() { drop(); }

  std::shared_ptr<Timer> schedule(double seconds, bool repeats, Block block);
  void remove(const std::shared_ptr<RunLoopTimer>& timer);
  /// Invalidates all timers.
  void drop();

 private:
  void insert(std::shared_ptr<RunLoopTimer> timer);
  void fire();
  void wakeForFirst();

  QTimer wakeUp_;
  /// By when they are due: seconds of the monotonic clock.
  std::multimap<double, std::shared_ptr<RunLoopTimer>> timers_;
};

}  // namespace vistrel::platform::linux_desktop
