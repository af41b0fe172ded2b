#pragma once

#include <cstddef>
#include <map>
#include <mutex>
#include <vector>

#include "platform/simulated/SimulatedDispatch.h"

namespace vistrel::platform::simulated {

/// What the capture service is asked for and answers later.
enum class Request { content, start, stop, update };

/// When the capture service's completions run: at once, late, or when the test lets them. They run
/// on the service's queue, each exactly once. Any thread.
class ServiceAnswers {
 public:
  explicit ServiceAnswers(SimulatedQueue& queue) : queue_(queue) {}

  /// Answers of that kind come so much later from now on.
  void setDelay(Request request, double seconds);
  /// Keeps answers of that kind back from now on.
  void hold(Request request);
  std::size_t heldCount(Request request) const;
  /// Lets one held answer go, counted from the oldest; later ones are still held.
  void releaseOne(Request request, std::size_t index = 0);
  /// Lets all held answers go in their order, and holds no more.
  void release(Request request);
  void releaseEverything();

  /// For the service: hands in an answer.
  void answer(Request request, Block block);

 private:
  struct Script {
    double delay = 0;
    bool holds = false;
    std::vector<Block> held;
  };

  SimulatedQueue& queue_;
  mutable std::mutex mutex_;
  std::map<Request, Script> scripts_;  // guarded by mutex_
};

}  // namespace vistrel::platform::simulated
