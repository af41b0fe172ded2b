#pragma once

#import <dispatch/dispatch.h>

#include <memory>

#include "platform/simulated/VirtualTimeDispatch.h"

namespace vistrel::fake {

/// The time and the queues of one scenario: all that the fakes do happens on the thread that made it,
/// when the scenario turns its queues or moves its time. One at a time.
class World {
 public:
  World();
  World(const World&) = delete;
  World& operator=(const World&) = delete;
  ~World();

  platform::simulated::VirtualTimeDispatch& dispatch() { return dispatch_; }
  /// The queue that the frameworks call back on where they do not promise another.
  dispatch_queue_t serviceQueue();

 private:
  platform::simulated::VirtualTimeDispatch dispatch_;
};

/// The one that lives; ends the test when there is none.
World& world();

/// Has `block` run on `queue` after `seconds`.
void runLater(dispatch_queue_t queue, double seconds, dispatch_block_t block);

}  // namespace vistrel::fake
