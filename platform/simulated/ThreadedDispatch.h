#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "platform/simulated/SimulatedDispatch.h"

namespace vistrel::platform::simulated {

class TaskList;
struct ThreadedWork;

/// Serial queues and the capture service are threads, time is real, and the main queue runs where
/// the test turns it. For the thread sanitizer.
class ThreadedDispatch : public SimulatedDispatch {
 public:
  ThreadedDispatch();
  /// Waits for the threads; drain first.
  ~ThreadedDispatch() override;

  Date now() override;
  DispatchQueue& mainQueue() override;
  void mainAsyncAfter(double seconds, Block block) override;
  std::shared_ptr<DispatchQueue> makeSerialQueue(std::string label,
                                                 QualityOfService quality) override;
  std::shared_ptr<Semaphore> makeSemaphore(int value) override;

  SimulatedQueue& serviceQueue() override;
  void turnMainQueue() override;
  bool turnMainUntil(const std::function<bool()>& condition, double seconds) override;
  void drain() override;

 private:
  struct Worker {
    std::shared_ptr<TaskList> tasks;
    std::thread thread;
  };

  std::shared_ptr<SimulatedQueue> startQueue(std::string label, QualityOfService quality);
  void joinEndedWorkers();
  void dropLaterMainBlocks();

  const std::shared_ptr<ThreadedWork> work_;
  const std::unique_ptr<DispatchQueue> main_;
  std::mutex workersMutex_;
  std::vector<Worker> workers_;  // guarded by workersMutex_
  std::shared_ptr<SimulatedQueue> service_;
};

}  // namespace vistrel::platform::simulated
