#pragma once

#include <QObject>
#include <memory>
#include <string>
#include <thread>

#include "platform/Backend.h"
#include "platform/linux/qt/process/RunLoopTimers.h"

namespace vistrel::platform::linux_desktop {

/// The main thread's queue: each block is an event posted to the toolkit's loop, so blocks also run
/// in the nested loop of an alert.
class MainQueue final : public QObject, public DispatchQueue {
 public:
  MainQueue() = default;

  const std::string& label() const override { return label_; }
  QualityOfService qualityOfService() const override { return QualityOfService::userInteractive; }
  void async(Block block) override;
  bool isCurrent() const override { return std::this_thread::get_id() == mainThread_; }

 protected:
  bool event(QEvent* event) override;

 private:
  const std::string label_ = "main";
  const std::thread::id mainThread_ = std::this_thread::get_id();
};

/// Main queue and timers on the toolkit's loop, serial queues on threads of their own.
class QtDispatch final : public DispatchBackend {
 public:
  QtDispatch();

  Date now() override;
  DispatchQueue& mainQueue() override { return mainQueue_; }
  void mainAsyncAfter(double seconds, Block block) override;
  std::shared_ptr<DispatchQueue> makeSerialQueue(std::string label,
                                                 QualityOfService quality) override;
  std::shared_ptr<Timer> scheduledTimer(double seconds, bool repeats, Block block) override;
  std::shared_ptr<Semaphore> makeSemaphore(int value) override;

  /// Once the loop has ended: drops all timers and runs what is left on the main queue, so that
  /// objects handed to it for destruction are destroyed. Main thread.
  void finish();

 private:
  /// Added to the monotonic clock: a person who sets the system's clock does not disturb ours.
  const double referenceOffset_;
  MainQueue mainQueue_;
  RunLoopTimers timers_;
};

}  // namespace vistrel::platform::linux_desktop
