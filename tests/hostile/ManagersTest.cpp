#include <atomic>
#include <thread>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/x11/manager/Manager.h"
#include "tests/hostile/ListingTest.h"

namespace vistrel::hostile {
namespace {

using namespace platform::linux_desktop;

/// What managers leave for all to read, and what anybody else can write there.
class Managers : public ListingTest {
 protected:
  std::shared_ptr<SerialQueue> makeQueue() const {
    return SerialQueue::make("managers", platform::QualityOfService::standard);
  }
};

TEST_F(Managers, AreNotWaitedForAnyLongerBecauseOfSomebodysNoise) {
  playManager();
  std::atomic<bool> hasAnswer = false;
  std::jthread noise([this](const std::stop_token& stop) {
    const testbed::XConnection other(display_.name());
    const xcb_atom_t anything = other.atom("_NOISE");
    for (std::uint32_t i = 0; !stop.stop_requested(); ++i) {
      xcb_change_property(other.get(), XCB_PROP_MODE_REPLACE, other.root(), anything,
                          XCB_ATOM_CARDINAL, 32, 1, &i);
    }
  });
  const auto queue = makeQueue();
  queue->async([&] {
    EXPECT_FALSE(managerReaches(*lister_, {0, 0, 5000, 100}, monotonicNow() + managersTime));
    hasAnswer = true;
  });
  EXPECT_TRUE(testbed::eventually([&] { return hasAnswer.load(); }));
  noise.request_stop();
  asyncAndWait(*queue, [] {});
}

}  // namespace
}  // namespace vistrel::hostile
