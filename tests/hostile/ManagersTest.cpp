#include <atomic>
#include <thread>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/x11/manager/Manager.h"
#include "platform/linux/x11/panel/FullScreenFollower.h"
#include "tests/hostile/ListingTest.h"

namespace vistrel::hostile {
namespace {

using namespace platform::linux_desktop;
using testing::ElementsAre;
using testing::IsEmpty;

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
    EXPECT_FALSE(managerReaches(*lister_, {0, 0, 5000, 100}));
    hasAnswer = true;
  });
  EXPECT_TRUE(testbed::eventually([&] { return hasAnswer.load(); }));
  noise.request_stop();
  asyncAndWait(*queue, [] {});
}

TEST_F(Managers, AreFollowedAfterTheRootWasSaidToBeActive) {
  const RawSource panel(connection_, {});
  const RawSource fullScreen(connection_, {});
  const auto root = connection_.root();
  connection_.setNumbers(fullScreen.id(), "_NET_WM_STATE", XCB_ATOM_ATOM,
                         {connection_.atom("_NET_WM_STATE_FULLSCREEN")});
  const auto queue = makeQueue();
  const auto follower = FullScreenFollower::on(queue);
  queue->async([&] { follower->add(panel.id()); });
  const auto isPanelOf = [&](const auto& owners) {
    return testbed::eventually([&] {
      return testing::Matches(owners)(connection_.numbers(panel.id(), "WM_TRANSIENT_FOR"));
    });
  };
  const auto setActive = [&](xcb_window_t window) {
    connection_.setNumbers(root, "_NET_ACTIVE_WINDOW", XCB_ATOM_WINDOW, {window});
    connection_.sync();
    asyncAndWait(*queue, [] {});
  };
  setActive(root);
  setActive(fullScreen.id());
  EXPECT_TRUE(isPanelOf(ElementsAre(fullScreen.id())));
  setActive(XCB_WINDOW_NONE);
  EXPECT_TRUE(isPanelOf(IsEmpty()));
}

}  // namespace
}  // namespace vistrel::hostile
