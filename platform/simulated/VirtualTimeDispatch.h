#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <utility>

#include "platform/simulated/SimulatedDispatch.h"

namespace vistrel::platform::simulated {

class VirtualQueue;

/// Every queue's blocks run on the one thread that made this, in the order in which they fall due;
/// time moves only when the test moves it or waits. Ends the program when another thread calls in.
class VirtualTimeDispatch : public SimulatedDispatch {
 public:
  VirtualTimeDispatch();
  ~VirtualTimeDispatch() override;

  Date now() override { return Date{now_}; }
  DispatchQueue& mainQueue() override;
  void mainAsyncAfter(double seconds, Block block) override;
  std::shared_ptr<DispatchQueue> makeSerialQueue(std::string label,
                                                 QualityOfService quality) override;
  /// Waiting lets every queue run that is not itself in the middle of a block; on main, that is
  /// every queue but main.
  std::shared_ptr<Semaphore> makeSemaphore(int value) override;

  SimulatedQueue& serviceQueue() override;
  /// Also runs what is ready on the other queues.
  void turnMainQueue() override;
  /// Runs what is ready on every queue but main.
  void turnOtherQueues();
  /// Moves time, running everything that falls due on the way in the order of its due time.
  void advance(double seconds);
  /// Moves time from one due block to the next.
  bool turnMainUntil(const std::function<bool()>& condition, double seconds) override;
  void drain() override;

 private:
  friend class VirtualQueue;
  friend class VirtualSemaphore;

  struct Task {
    std::shared_ptr<VirtualQueue> queue;
    Block block;
  };
  using Tasks = std::map<std::pair<double, std::uint64_t>, Task>;

  std::shared_ptr<VirtualQueue> makeQueue(std::string label, QualityOfService quality);
  void post(std::shared_ptr<VirtualQueue> queue, double seconds, Block block);
  /// Runs the first task due by `limit` whose queue is free (and is not main, unless `withMain`).
  bool runOne(double limit, bool withMain = true);
  void run(Tasks::iterator task);
  bool waitUntil(const std::function<bool()>& condition, double seconds);
  bool isCurrent(const VirtualQueue& queue) const;

  const std::thread::id thread_ = std::this_thread::get_id();
  double now_ = 600'000'000;
  std::uint64_t posted_ = 0;
  Tasks tasks_;
  std::shared_ptr<VirtualQueue> main_;
  std::shared_ptr<VirtualQueue> service_;
  VirtualQueue* current_ = nullptr;  // whose block runs; null outside any block
};

}  // namespace vistrel::platform::simulated
