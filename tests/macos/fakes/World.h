#pragma once

#import <dispatch/dispatch.h>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "platform/simulated/VirtualTimeDispatch.h"
#include "tests/macos/fakes/Desktop.h"

namespace vistrel::fake {

/// The time, the queues and the desktop of one scenario: all that the fakes do happens on the
/// thread that made it, when the scenario turns its queues or moves its time. One at a time.
class World {
 public:
  World();
  World(const World&) = delete;
  World& operator=(const World&) = delete;
  ~World();

  platform::simulated::VirtualTimeDispatch& dispatch() { return *dispatch_; }
  Desktop& desktop() { return desktop_; }

  /// What a person does while the application's event loop runs; the loop ends with it.
  std::function<void()> person;

 private:
  std::unique_ptr<platform::simulated::VirtualTimeDispatch> dispatch_ =
      std::make_unique<platform::simulated::VirtualTimeDispatch>();
  Desktop desktop_;
};

/// The one that lives; ends the test when there is none.
World& world();

/// The queue that the frameworks call back on where they do not promise another.
dispatch_queue_t serviceQueue();

/// Has `block` run on `queue` after `seconds`.
void runLater(dispatch_queue_t queue, double seconds, dispatch_block_t block);

/// Runs what is ready on every queue, and shows what that has changed.
void turn();
/// Does so while `seconds` pass.
void advance(double seconds);
/// Turns after an event, which has an autorelease pool of its own: NSApplication, run.
void act(dispatch_block_t event);

/// How many objects live by the name of their class, without those that the frameworks share and
/// never release.
std::map<std::string, long> liveObjects();

}  // namespace vistrel::fake
