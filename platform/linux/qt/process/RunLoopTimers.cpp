#include "platform/linux/qt/process/RunLoopTimers.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <utility>

#include "platform/linux/CurrentThread.h"
#include "platform/linux/SerialQueue.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// The toolkit counts in milliseconds, and in an `int` of them.
constexpr double shortestWait = 0.001;
constexpr double longestWait = 24.0 * 24 * 3600;

}  // namespace

class RunLoopTimer final : public Timer, public std::enable_shared_from_this<RunLoopTimer> {
 public:
  RunLoopTimer(double seconds, bool repeats, Block block, RunLoopTimers& runLoop)
      : seconds_(seconds),
        repeats_(repeats),
        block_(std::move(block)),
        asked_(monotonicNow()),
        runLoop_(&runLoop) {
    if (repeats) multiple_ = std::ceil(asked_ / beat() + 1);
  }

  void invalidate() override {
    if (auto* runLoop = std::exchange(runLoop_, nullptr)) runLoop->remove(shared_from_this());
  }
  bool isValid() const override { return runLoop_ != nullptr; }
  double timeInterval() const override { return seconds_; }

  /// Seconds of the monotonic clock.
  double due() const { return repeats_ ? multiple_ * beat() : asked_ + seconds_; }
  /// Makes it due once more; invalid where it does not repeat.
  void advance(double now) {
    if (repeats_) {
      multiple_ = std::max(multiple_, std::floor(now / beat())) + 1;
    } else {
      runLoop_ = nullptr;
    }
  }
  void runBlock() const { block_(); }

 private:
  double beat() const { return std::clamp(seconds_, shortestWait, longestWait); }

  const double seconds_;
  const bool repeats_;
  const Block block_;
  const double asked_;
  /// When it is due, in intervals: equal to the last bit for all timers of one interval.
  double multiple_ = 0;
  /// Null once invalid.
  RunLoopTimers* runLoop_;
};

RunLoopTimers::RunLoopTimers() {
  wakeUp_.setTimerType(Qt::PreciseTimer);
  wakeUp_.setSingleShot(true);
  QObject::connect(&wakeUp_, &QTimer::timeout, &wakeUp_, [this] { fire(); });
}

std::shared_ptr<Timer> RunLoopTimers::schedule(double seconds, bool repeats, Block block) {
  assert(isMainThread());
  auto timer = std::make_shared<RunLoopTimer>(seconds, repeats, std::move(block), *this);
  insert(timer);
  wakeForFirst();
  return timer;
}

void RunLoopTimers::remove(const std::shared_ptr<RunLoopTimer>& timer) {
  assert(isMainThread());
  std::erase_if(timers_, [&timer](const auto& each) { return each.second == timer; });
  wakeForFirst();
}

void RunLoopTimers::drop() {
  while (!timers_.empty()) {
    const auto timer = timers_.begin()->second;
    timer->invalidate();
  }
}

void RunLoopTimers::insert(std::shared_ptr<RunLoopTimer> timer) {
  const double due = timer->due();
  timers_.emplace(due, std::move(timer));
}

void RunLoopTimers::fire() {
  const double now = monotonicNow();
  while (!timers_.empty() && timers_.begin()->first <= now) {
    const auto timer = timers_.begin()->second;
    timers_.erase(timers_.begin());
    timer->advance(now);
    if (timer->isValid()) insert(timer);
    // Before the block, which may run a loop of its own: started anew, the toolkit's timer goes off
    // in there as well.
    wakeForFirst();
    timer->runBlock();
  }
  wakeForFirst();
}

void RunLoopTimers::wakeForFirst() {
  if (timers_.empty()) {
    wakeUp_.stop();
  } else {
    const double seconds = timers_.begin()->first - monotonicNow();
    wakeUp_.start(static_cast<int>(std::ceil(std::clamp(seconds, 0.0, longestWait) * 1000)));
  }
}

}  // namespace vistrel::platform::linux_desktop
