#include <memory>
#include <stdexcept>

#include "platform/linux/x11/server/Connection.h"
#include "platform/linux/x11/source/Subwindows.h"
#include "tests/hostile/HostileTest.h"

namespace vistrel::hostile {
namespace {

using platform::linux_desktop::Connection;
using platform::linux_desktop::failureOf;

class Subwindows : public HostileTest {
 protected:
  static constexpr std::uint32_t toClient =
      XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;

  Subwindows() {
    EXPECT_FALSE(failureOf(ours_->xcb(), ours_->selectEvents(source_.id(), toClient)));
  }

  xcb_window_t makeIn(xcb_window_t parent) {
    const xcb_window_t window = xcb_generate_id(connection_.get());
    xcb_create_window(connection_.get(), XCB_COPY_FROM_PARENT, window, parent, 0, 0, 20, 20, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_map_window(connection_.get(), window);
    connection_.sync();
    return window;
  }
  void destroy(xcb_window_t window) {
    xcb_destroy_window(connection_.get(), window);
    connection_.sync();
  }
  void unmap(xcb_window_t window) {
    xcb_unmap_window(connection_.get(), window);
    connection_.sync();
  }
  /// What of a window `ours_` listens to; throws where there is no such window.
  xcb_event_mask_t ownMaskOf(xcb_window_t window) const {
    const testbed::XReply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(ours_->xcb(),
                                        xcb_get_window_attributes(ours_->xcb(), window), nullptr));
    if (!attributes) throw std::runtime_error("the window has gone");
    return static_cast<xcb_event_mask_t>(attributes->your_event_mask);
  }
  /// Whether they have noticed a loss, once all has been heard that has happened.
  bool hasLoss() {
    ours_->sync();
    ours_->serve([this](const auto& event) { subwindows_.handle(event); }, nullptr);
    // By now the server also has what was asked for because of that.
    ours_->sync();
    return subwindows_.takeLoss();
  }

  RawSource source_{connection_, {}};
  const std::unique_ptr<Connection> ours_ = Connection::open();
  platform::linux_desktop::Subwindows subwindows_{*ours_};
};

TEST_F(Subwindows, AreMissedHoweverDeepTheyLie) {
  const auto form = makeIn(source_.id());
  const auto box = makeIn(form);
  const auto button = makeIn(box);
  subwindows_.watch(source_.id());
  EXPECT_FALSE(hasLoss());
  destroy(button);
  EXPECT_TRUE(hasLoss());
  EXPECT_FALSE(hasLoss()) << "it is told once";
  destroy(form);
  EXPECT_TRUE(hasLoss());
}

TEST_F(Subwindows, AreMissedWhereTheyCameLater) {
  subwindows_.watch(source_.id());
  const auto form = makeIn(source_.id());
  EXPECT_FALSE(hasLoss());
  const auto button = makeIn(form);
  EXPECT_FALSE(hasLoss());
  unmap(button);
  EXPECT_TRUE(hasLoss());
}

TEST_F(Subwindows, AreNotMissedWhereTheClientItselfGoes) {
  subwindows_.watch(source_.id());
  source_.unmap();
  EXPECT_FALSE(hasLoss());
  source_.destroy();
  EXPECT_FALSE(hasLoss());
}

TEST_F(Subwindows, AreMissedAsWellWhenTheyAreWatchedAgain) {
  const auto form = makeIn(source_.id());
  const auto button = makeIn(form);
  subwindows_.watch(source_.id());
  EXPECT_FALSE(hasLoss());
  subwindows_.watch(source_.id());
  unmap(button);
  EXPECT_TRUE(hasLoss());
}

TEST_F(Subwindows, AreLeftAloneOnceTheyAreWatchedNoLonger) {
  const auto moved = makeIn(source_.id());
  const auto stays = makeIn(source_.id());
  {
    platform::linux_desktop::Subwindows others(*ours_);
    others.watch(source_.id());
    xcb_reparent_window(connection_.get(), moved, connection_.root(), 0, 0);
    connection_.sync();
    others.watch(source_.id());
  }
  EXPECT_EQ(ownMaskOf(moved), XCB_EVENT_MASK_NO_EVENT);
  EXPECT_EQ(ownMaskOf(stays), XCB_EVENT_MASK_NO_EVENT);
}

TEST_F(Subwindows, ThatAreListenedToForAnotherReasonGoOnBeingSo) {
  const auto before = makeIn(source_.id());
  const auto after = makeIn(source_.id());
  const auto listen = [this](xcb_window_t window) {
    EXPECT_FALSE(
        failureOf(ours_->xcb(), ours_->selectEvents(window, XCB_EVENT_MASK_PROPERTY_CHANGE)));
  };
  listen(before);
  {
    platform::linux_desktop::Subwindows others(*ours_);
    others.watch(source_.id());
    listen(after);
  }
  for (const auto window : {before, after}) {
    EXPECT_EQ(ownMaskOf(window), XCB_EVENT_MASK_PROPERTY_CHANGE);
  }
}

TEST_F(Subwindows, AreNotCountedBeyondMeasure) {
  for (int i = 0; i < 600; ++i) makeIn(source_.id());
  subwindows_.watch(source_.id());
  EXPECT_FALSE(hasLoss());
  unmap(makeIn(source_.id()));
  EXPECT_TRUE(hasLoss()) << "the client tells of its own children";
}

}  // namespace
}  // namespace vistrel::hostile
