#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "platform/Dispatch.h"

namespace vistrel::platform::simulated {

/// Blocks in the order of their due times, and of their arrival at the same time; handed from any
/// thread to the one that runs them.
class TaskList {
 public:
  using Clock = std::chrono::steady_clock;

  void push(double seconds, Block block);
  /// The first block that is due now.
  std::optional<Block> takeReady();
  /// The next block, waiting until it is due. None once the list is closed and has nothing ready.
  std::optional<Block> takeNext();
  /// Sleeps until a block is due, `wake` is called or `deadline` has come.
  void waitForWork(Clock::time_point deadline);
  void wake();
  /// No block is waited for from now on.
  void close();
  /// The thread that ran the blocks is about to return.
  void markEnded();
  bool hasEnded();
  /// Everything in the list is due now.
  void hurry();
  /// Takes out what is not due yet.
  std::vector<Block> takeLater();

 private:
  using Tasks = std::map<std::pair<Clock::time_point, std::uint64_t>, Block>;

  std::optional<Block> takeReadyLocked();

  std::mutex mutex_;  // guards everything below
  std::condition_variable changed_;
  Tasks tasks_;
  std::uint64_t pushed_ = 0;
  bool woken_ = false;
  bool closed_ = false;
  bool ended_ = false;
};

}  // namespace vistrel::platform::simulated
