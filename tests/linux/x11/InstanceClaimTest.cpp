#include <atomic>
#include <gtest/gtest.h>
#include <memory>
#include <utility>

#include "platform/linux/x11/instance/InstanceClaim.h"
#include "platform/linux/x11/instance/RunningInstance.h"
#include "tests/support/Poll.h"
#include "tests/support/PrivateDisplay.h"
#include "tests/support/XConnection.h"

namespace vistrel::platform::linux_desktop {
namespace {

using testbed::eventually;

/// Another client of the display, with a window of its own.
class Client {
 public:
  explicit Client(const testbed::PrivateDisplay& display) : connection_(display.name()) {
    xcb_create_window(connection_.get(), XCB_COPY_FROM_PARENT, window_, connection_.root(), 0, 0, 1,
                      1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    connection_.sync();
  }

  xcb_window_t window() const { return window_; }
  xcb_window_t root() const { return connection_.root(); }

  void askToShow(xcb_window_t requestor) { ask(requestor, target_); }
  /// As that, for what no instance does.
  void askInVain() { ask(window_, connection_.atom("_VISTREL_NO_SUCH_TARGET")); }
  void sync() const { connection_.sync(); }
  void takeClaim() {
    xcb_set_selection_owner(connection_.get(), window_, selection_, XCB_CURRENT_TIME);
    sync();
  }
  xcb_window_t owner() const {
    const testbed::XReply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        connection_.get(), xcb_get_selection_owner(connection_.get(), selection_), nullptr));
    return reply->owner;
  }
  bool exists(xcb_window_t window) const {
    const testbed::XReply<xcb_get_geometry_reply_t> reply(xcb_get_geometry_reply(
        connection_.get(), xcb_get_geometry(connection_.get(), window), nullptr));
    return reply != nullptr;
  }
  /// Whether a request is marked as done there.
  bool isMarked(xcb_window_t window) const {
    const testbed::XReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        connection_.get(),
        xcb_get_property(connection_.get(), 0, window, target_, XCB_ATOM_ANY, 0, 0), nullptr));
    return reply->type != XCB_ATOM_NONE;
  }
  /// How many requests have been answered so far, refusals too.
  int answers() {
    while (
        const testbed::XReply<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) {
      if ((event->response_type & 0x7f) == XCB_SELECTION_NOTIFY) ++answers_;
    }
    return answers_;
  }

 private:
  void ask(xcb_window_t requestor, xcb_atom_t target) {
    xcb_convert_selection(connection_.get(), requestor, selection_, target, target_,
                          XCB_CURRENT_TIME);
  }

  const testbed::XConnection connection_;
  const xcb_window_t window_ = xcb_generate_id(connection_.get());
  const xcb_atom_t selection_ = connection_.atom(instanceSelection);
  const xcb_atom_t target_ = connection_.atom(showTarget);
  int answers_ = 0;
};

class InstanceClaimTest : public testing::Test {
 protected:
  InstanceClaimTest() {
    display_.adoptEnvironment();
    claim_ = InstanceClaim::take("").claim;
    onQueue([this] {
      claim_->serveOn(*queue_);
      claim_->setShow([this](xcb_timestamp_t, std::function<void()> shown) {
        shown_ = std::move(shown);
        ++showings_;
      });
    });
  }
  ~InstanceClaimTest() override {
    onQueue([this] { shown_ = nullptr; });
  }

  void onQueue(Block block) { asyncAndWait(*queue_, std::move(block)); }
  bool beginsToShow(int times) {
    return eventually([&] { return showings_ == times; });
  }
  void endShowing() {
    onQueue([this] { std::exchange(shown_, nullptr)(); });
  }

  const testbed::PrivateDisplay display_{{.windowManager = testbed::WindowManager::none}};
  const std::shared_ptr<SerialQueue> queue_ =
      SerialQueue::make("claim", QualityOfService::userInteractive);
  std::shared_ptr<InstanceClaim> claim_;
  std::atomic<int> showings_ = 0;
  std::function<void()> shown_;  // on the queue
  Client client_{display_};
};

TEST_F(InstanceClaimTest, ShowsItOnceMoreForAllWhoAskWhileItShowsItself) {
  constexpr int flood = 10'000;
  client_.askToShow(client_.window());
  client_.sync();
  ASSERT_TRUE(beginsToShow(1));
  for (int i = 0; i < flood; ++i) client_.askToShow(client_.window());
  client_.askInVain();
  client_.sync();
  ASSERT_TRUE(eventually([&] { return client_.answers() == 1; })) << "all are heard";
  endShowing();
  ASSERT_TRUE(beginsToShow(2));
  endShowing();
  ASSERT_TRUE(eventually([&] { return client_.answers() == 2 + flood; })) << client_.answers();
  EXPECT_EQ(showings_, 2);
}

TEST_F(InstanceClaimTest, IsNotTakenBackFromAnotherClientAndAnswersNobodyAnyMore) {
  const xcb_window_t formerOwner = client_.owner();
  client_.askToShow(client_.window());
  client_.sync();
  ASSERT_TRUE(beginsToShow(1));
  Client other(display_);
  other.takeClaim();
  EXPECT_TRUE(eventually([&] { return !client_.exists(formerOwner); }));
  endShowing();
  client_.askToShow(client_.window());
  client_.sync();
  onQueue([] {});
  EXPECT_EQ(client_.owner(), other.window());
  EXPECT_EQ(client_.answers(), 0);
  EXPECT_EQ(showings_, 1);
}

TEST_F(InstanceClaimTest, RefusesToLeaveAMarkOnTheRootWindow) {
  client_.askToShow(client_.root());
  client_.askToShow(client_.window());
  client_.sync();
  ASSERT_TRUE(beginsToShow(1));
  endShowing();
  EXPECT_TRUE(eventually([&] { return client_.isMarked(client_.window()); }));
  EXPECT_FALSE(client_.isMarked(client_.root()));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
