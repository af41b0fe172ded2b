#include "platform/simulated/SimulatedDispatch.h"

#include <utility>

namespace vistrel::platform::simulated {
namespace {

class SimulatedTimer : public Timer, public std::enable_shared_from_this<SimulatedTimer> {
 public:
  SimulatedTimer(SimulatedDispatch& dispatch, double seconds, bool repeats, Block block)
      : dispatch_(dispatch), seconds_(seconds), repeats_(repeats), block_(std::move(block)) {}

  void invalidate() override { block_ = nullptr; }
  bool isValid() const override { return block_ != nullptr; }
  double timeInterval() const override { return seconds_; }

  void schedule() {
    dispatch_.mainAsyncAfter(seconds_, [self = shared_from_this()] { self->fire(); });
  }

 private:
  void fire() {
    if (!isValid()) return;
    // A copy: the block may invalidate its own timer.
    const Block block = block_;
    if (repeats_) {
      schedule();
    } else {
      invalidate();
    }
    block();
  }

  SimulatedDispatch& dispatch_;
  const double seconds_;
  const bool repeats_;
  Block block_;  // null once invalid
};

}  // namespace

std::shared_ptr<Timer> SimulatedDispatch::scheduledTimer(double seconds, bool repeats,
                                                         Block block) {
  auto timer = std::make_shared<SimulatedTimer>(*this, seconds, repeats, std::move(block));
  timer->schedule();
  return timer;
}

}  // namespace vistrel::platform::simulated
