#include "tests/macos/fakes/World.h"

#include <utility>
#include <vector>

#include "tests/macos/fakes/Objects.h"
#include "tests/macos/fakes/Recorder.h"
#include "tests/macos/runtime/Objects.h"

namespace vistrel::fake {

namespace {

World* living = nullptr;

}  // namespace

World::World() {
  if (living != nullptr) fail("there is a world already");
  living = this;
  openQueues();
}

/// What waits in the queues stays there, as it does when a process exits.
World::~World() {
  static auto* const ended =
      new std::vector<std::unique_ptr<platform::simulated::VirtualTimeDispatch>>;
  ended->push_back(std::move(dispatch_));
  closeQueues();
  living = nullptr;
}

World& world() {
  if (living == nullptr) fail("there is no world");
  return *living;
}

void turn() {
  @autoreleasepool {
    world().dispatch().turnMainQueue();
    displayWindows();
    world().dispatch().turnMainQueue();
  }
}

void advance(double seconds) {
  world().dispatch().advance(seconds);
  turn();
}

void act(dispatch_block_t event) {
  @autoreleasepool {
    event();
  }
  turn();
}

std::map<std::string, long> liveObjects() {
  auto live = objc::liveObjects();
  for (const auto& [name, count] : sharedObjects()) {
    if ((live[name] -= count) == 0) live.erase(name);
  }
  return live;
}

}  // namespace vistrel::fake
