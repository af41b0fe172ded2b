#include "platform/macos/GrandCentralDispatch.h"

#import <Foundation/Foundation.h>

#include <cstdint>
#include <utility>

#include "platform/Geometry.h"

namespace vistrel::platform::macos {

namespace {

dispatch_time_t afterSeconds(double seconds) {
  return dispatch_time(DISPATCH_TIME_NOW, truncatedToInt64(seconds * NSEC_PER_SEC));
}

/// A block of the system's kind. Each run has an autorelease pool of its own, since a queue's
/// thread empties its pool only when it has nothing left to do.
dispatch_block_t systemBlock(Block block) {
  return ^{
    @autoreleasepool {
      block();
    }
  };
}

class SystemQueue : public DispatchQueue {
 public:
  SystemQueue(dispatch_queue_t queue, std::string label, QualityOfService quality)
      : queue_(queue), label_(std::move(label)), quality_(quality) {}

  const std::string& label() const override { return label_; }
  QualityOfService qualityOfService() const override { return quality_; }
  void async(Block block) override { dispatch_async(queue_, systemBlock(std::move(block))); }
  dispatch_queue_t queue() const { return queue_; }

 private:
  dispatch_queue_t queue_;
  std::string label_;
  QualityOfService quality_;
};

class MainQueue final : public SystemQueue {
 public:
  MainQueue() : SystemQueue(dispatch_get_main_queue(), "main", QualityOfService::userInteractive) {}

  bool isCurrent() const override { return NSThread.isMainThread; }
};

dispatch_queue_t serialQueue(const std::string& label, QualityOfService quality) {
  const qos_class_t qosClass =
      quality == QualityOfService::userInteractive ? QOS_CLASS_USER_INTERACTIVE : QOS_CLASS_DEFAULT;
  return dispatch_queue_create(
      label.c_str(), dispatch_queue_attr_make_with_qos_class(DISPATCH_QUEUE_SERIAL, qosClass, 0));
}

class SerialQueue final : public SystemQueue {
 public:
  SerialQueue(std::string label, QualityOfService quality)
      : SystemQueue(serialQueue(label, quality), label, quality) {
    dispatch_queue_set_specific(queue(), &identityKey, identity(), nullptr);
  }

  bool isCurrent() const override { return dispatch_get_specific(&identityKey) == identity(); }

 private:
  static inline const char identityKey = 0;

  /// What the queue is marked with, so that it is known also in blocks that others hand in, like
  /// the capture service.
  void* identity() const { return (__bridge void*)queue(); }
};

/// Held by the timer's block, and so by the run loop for as long as the timer is valid.
class RunLoopTimer final : public Timer {
 public:
  void setTimer(NSTimer* timer) { timer_ = timer; }

  void invalidate() override { [timer_ invalidate]; }
  bool isValid() const override { return timer_.isValid; }
  double timeInterval() const override { return timer_.timeInterval; }

 private:
  __weak NSTimer* timer_ = nil;
};

class SystemSemaphore final : public Semaphore {
 public:
  explicit SystemSemaphore(int value) : semaphore_(dispatch_semaphore_create(value)) {}

  void signal() override { dispatch_semaphore_signal(semaphore_); }
  bool wait(double timeoutSeconds) override {
    return dispatch_semaphore_wait(semaphore_, afterSeconds(timeoutSeconds)) == 0;
  }

 private:
  dispatch_semaphore_t semaphore_;
};

}  // namespace

dispatch_queue_t systemQueue(const DispatchQueue& queue) {
  return dynamic_cast<const SystemQueue&>(queue).queue();
}

GrandCentralDispatch::GrandCentralDispatch() : mainQueue_(std::make_unique<MainQueue>()) {}

Date GrandCentralDispatch::now() {
  // The system's clock can be set back; the one that timers and delays go by, which stands still
  // while the system sleeps, counts on from what it said at first.
  NSProcessInfo* process = NSProcessInfo.processInfo;
  static const double first = NSDate.timeIntervalSinceReferenceDate;
  static const double start = process.systemUptime;
  return {first + process.systemUptime - start};
}

void GrandCentralDispatch::mainAsyncAfter(double seconds, Block block) {
  dispatch_after(afterSeconds(seconds), dispatch_get_main_queue(), systemBlock(std::move(block)));
}

std::shared_ptr<DispatchQueue> GrandCentralDispatch::makeSerialQueue(std::string label,
                                                                     QualityOfService quality) {
  return std::make_shared<SerialQueue>(std::move(label), quality);
}

std::shared_ptr<Timer> GrandCentralDispatch::scheduledTimer(double seconds, bool repeats,
                                                            Block block) {
  const auto timer = std::make_shared<RunLoopTimer>();
  timer->setTimer([NSTimer scheduledTimerWithTimeInterval:seconds
                                                  repeats:repeats
                                                    block:^(NSTimer*) {
                                                      (void)timer;
                                                      block();
                                                    }]);
  return timer;
}

std::shared_ptr<Semaphore> GrandCentralDispatch::makeSemaphore(int value) {
  return std::make_shared<SystemSemaphore>(value);
}

}  // namespace vistrel::platform::macos
