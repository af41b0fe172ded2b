#include "platform/simulated/VirtualTimeDispatch.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace vistrel::platform::simulated {

class VirtualQueue : public SimulatedQueue, public std::enable_shared_from_this<VirtualQueue> {
 public:
  VirtualQueue(VirtualTimeDispatch& dispatch, std::string label, QualityOfService quality)
      : dispatch_(dispatch), label_(std::move(label)), quality_(quality) {}

  const std::string& label() const override { return label_; }
  QualityOfService qualityOfService() const override { return quality_; }
  void async(Block block) override { asyncAfter(0, std::move(block)); }
  void asyncAfter(double seconds, Block block) override {
    dispatch_.post(shared_from_this(), seconds, std::move(block));
  }
  bool isCurrent() const override { return dispatch_.isCurrent(*this); }

  bool isBusy() const { return busy_; }
  bool setBusy(bool busy) { return std::exchange(busy_, busy); }

 private:
  VirtualTimeDispatch& dispatch_;
  const std::string label_;
  const QualityOfService quality_;
  bool busy_ = false;
};

class VirtualSemaphore : public Semaphore {
 public:
  VirtualSemaphore(VirtualTimeDispatch& dispatch, int value) : dispatch_(dispatch), value_(value) {}

  void signal() override { ++value_; }
  bool wait(double timeoutSeconds) override {
    if (!dispatch_.waitUntil([this] { return value_ > 0; }, timeoutSeconds)) return false;
    --value_;
    return true;
  }

 private:
  VirtualTimeDispatch& dispatch_;
  int value_;
};

VirtualTimeDispatch::VirtualTimeDispatch()
    : main_(makeQueue("main", QualityOfService::userInteractive)),
      service_(makeQueue("simulated capture service", QualityOfService::standard)) {}

VirtualTimeDispatch::~VirtualTimeDispatch() = default;

DispatchQueue& VirtualTimeDispatch::mainQueue() { return *main_; }

SimulatedQueue& VirtualTimeDispatch::serviceQueue() { return *service_; }

void VirtualTimeDispatch::mainAsyncAfter(double seconds, Block block) {
  post(main_, seconds, std::move(block));
}

std::shared_ptr<VirtualQueue> VirtualTimeDispatch::makeQueue(std::string label,
                                                             QualityOfService quality) {
  return std::make_shared<VirtualQueue>(*this, std::move(label), quality);
}

std::shared_ptr<DispatchQueue> VirtualTimeDispatch::makeSerialQueue(std::string label,
                                                                    QualityOfService quality) {
  return makeQueue(std::move(label), quality);
}

std::shared_ptr<Semaphore> VirtualTimeDispatch::makeSemaphore(int value) {
  return std::make_shared<VirtualSemaphore>(*this, value);
}

bool VirtualTimeDispatch::isCurrent(const VirtualQueue& queue) const {
  return &queue == (current_ == nullptr ? main_.get() : current_);
}

void VirtualTimeDispatch::post(std::shared_ptr<VirtualQueue> queue, double seconds, Block block) {
  if (std::this_thread::get_id() != thread_) std::abort();
  const double due = now_ + std::max(seconds, 0.0);
  tasks_.emplace(std::pair{due, posted_++}, Task{std::move(queue), std::move(block)});
}

bool VirtualTimeDispatch::runOne(double limit, bool withMain) {
  for (auto task = tasks_.begin(); task != tasks_.end() && task->first.first <= limit; ++task) {
    const VirtualQueue* queue = task->second.queue.get();
    if (queue->isBusy() || (queue == main_.get() && !withMain)) continue;
    run(task);
    return true;
  }
  return false;
}

void VirtualTimeDispatch::run(Tasks::iterator task) {
  now_ = std::max(now_, task->first.first);
  const std::shared_ptr<VirtualQueue> queue = std::move(task->second.queue);
  Block block = std::move(task->second.block);
  tasks_.erase(task);

  VirtualQueue* const outer = std::exchange(current_, queue.get());
  queue->setBusy(true);
  block();
  // What the block held goes on its queue, as it would on a thread.
  block = nullptr;
  queue->setBusy(false);
  current_ = outer;
}

void VirtualTimeDispatch::turnMainQueue() {
  while (runOne(now_)) {
  }
}

void VirtualTimeDispatch::turnOtherQueues() {
  while (runOne(now_, false)) {
  }
}

void VirtualTimeDispatch::advance(double seconds) {
  const double end = now_ + seconds;
  while (runOne(end)) {
  }
  now_ = std::max(now_, end);
}

bool VirtualTimeDispatch::turnMainUntil(const std::function<bool()>& condition, double seconds) {
  const double end = now_ + std::max(seconds, 0.0);
  while (!condition()) {
    if (!runOne(end)) {
      now_ = std::max(now_, end);
      return condition();
    }
  }
  return true;
}

bool VirtualTimeDispatch::waitUntil(const std::function<bool()>& condition, double seconds) {
  VirtualQueue& waiting = current_ == nullptr ? *main_ : *current_;
  const bool wasBusy = waiting.setBusy(true);
  const bool held = turnMainUntil(condition, seconds);
  waiting.setBusy(wasBusy);
  return held;
}

void VirtualTimeDispatch::drain() {
  while (!tasks_.empty()) {
    do {
      turnMainQueue();
    } while (runOne(std::numeric_limits<double>::infinity(), false));
    // Only the main queue's later blocks are left; what one of them holds may hand in another.
    const Tasks dropped = std::exchange(tasks_, {});
  }
}

}  // namespace vistrel::platform::simulated
