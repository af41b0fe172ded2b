#include "platform/linux/qt/process/QtDispatch.h"

#include <QCoreApplication>
#include <QEvent>
#include <algorithm>
#include <cassert>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

#include "platform/linux/CurrentThread.h"
#include "platform/linux/SerialQueue.h"

namespace vistrel::platform::linux_desktop {

namespace {

class BlockEvent final : public QEvent {
 public:
  explicit BlockEvent(Block work) : QEvent(blockType()), block(std::move(work)) {}

  static Type blockType() {
    static const int type = registerEventType();
    return static_cast<Type>(type);
  }

  const Block block;
};

/// 1 January 2001 00:00 UTC in the system clock's seconds since 1970.
constexpr double referenceDate = 978307200;

double systemSeconds() {
  const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration<double>(sinceEpoch).count();
}

class CountingSemaphore final : public Semaphore {
 public:
  explicit CountingSemaphore(int value) : value_(value) {}

  void signal() override {
    const std::lock_guard lock(mutex_);
    ++value_;
    signalled_.notify_one();
  }

  bool wait(double timeoutSeconds) override {
    constexpr double longest = 1e9;
    const std::chrono::duration<double> timeout(std::clamp(timeoutSeconds, 0.0, longest));
    std::unique_lock lock(mutex_);
    if (!signalled_.wait_for(lock, timeout, [this] { return value_ > 0; })) return false;
    --value_;
    return true;
  }

 private:
  std::mutex mutex_;
  std::condition_variable signalled_;
  int value_;
};

}  // namespace

void MainQueue::async(Block block) {
  QCoreApplication::postEvent(this, new BlockEvent(std::move(block)));
}

bool MainQueue::event(QEvent* event) {
  if (event->type() != BlockEvent::blockType()) return QObject::event(event);
  static_cast<BlockEvent*>(event)->block();
  return true;
}

QtDispatch::QtDispatch() : referenceOffset_(systemSeconds() - referenceDate - monotonicNow()) {}

Date QtDispatch::now() { return {monotonicNow() + referenceOffset_}; }

void QtDispatch::mainAsyncAfter(double seconds, Block block) {
  const double deadline = monotonicNow() + seconds;
  mainQueue_.async([this, deadline, work = std::move(block)] {
    timers_.schedule(deadline - monotonicNow(), /*repeats=*/false, work);
  });
}

std::shared_ptr<DispatchQueue> QtDispatch::makeSerialQueue(std::string label,
                                                           QualityOfService quality) {
  return SerialQueue::make(std::move(label), quality);
}

std::shared_ptr<Timer> QtDispatch::scheduledTimer(double seconds, bool repeats, Block block) {
  return timers_.schedule(seconds, repeats, std::move(block));
}

std::shared_ptr<Semaphore> QtDispatch::makeSemaphore(int value) {
  return std::make_shared<CountingSemaphore>(value);
}

void QtDispatch::finish() {
  assert(isMainThread());
  timers_.drop();
  QCoreApplication::sendPostedEvents(&mainQueue_);
}

}  // namespace vistrel::platform::linux_desktop
