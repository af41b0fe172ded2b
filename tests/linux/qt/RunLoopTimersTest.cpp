#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <algorithm>
#include <chrono>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/qt/process/RunLoopTimers.h"
#include "tests/linux/qt/OffscreenQt.h"
#include "tests/support/Poll.h"

namespace vistrel::platform::linux_desktop {
namespace {

constexpr double interval = 0.02;

class RunLoopTimersTest : public ::testing::Test {
 protected:
  RunLoopTimersTest() {
    OffscreenQt::start();
    awake_ = QObject::connect(QAbstractEventDispatcher::instance(),
                              &QAbstractEventDispatcher::awake, [this] { ++wakes_; });
  }
  ~RunLoopTimersTest() override { QObject::disconnect(awake_); }

  /// A timer that notes which of the loop's wakes it fires in.
  std::shared_ptr<std::vector<int>> repeating(double seconds) {
    auto firings = std::make_shared<std::vector<int>>();
    timers_.schedule(seconds, /*repeats=*/true, [this, firings] { firings->push_back(wakes_); });
    return firings;
  }

  bool turnUntil(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + testbed::generousDeadline;
    while (!condition()) {
      if (std::chrono::steady_clock::now() >= end) return false;
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
  }

  int wakes_ = 0;
  RunLoopTimers timers_;

 private:
  QMetaObject::Connection awake_;
};

TEST_F(RunLoopTimersTest, ThoseOfOneIntervalFireTogetherWheneverTheyWereAskedFor) {
  std::vector<std::shared_ptr<std::vector<int>>> all;
  const double start = monotonicNow();
  for (int i = 0; i < 64; ++i) {
    while (monotonicNow() < start + interval * i / 16) {
    }
    all.push_back(repeating(interval));
  }
  ASSERT_TRUE(turnUntil([&] { return all.back()->size() >= 5; }));
  const auto& last = *all.back();
  for (const auto& firings : all) {
    EXPECT_TRUE(std::equal(last.rbegin(), last.rbegin() + 4, firings->rbegin()));
  }
}

TEST_F(RunLoopTimersTest, NoneFiresEarlierThanAsked) {
  for (const bool repeats : {false, true}) {
    for (int i = 0; i < 8; ++i) {
      const double asked = monotonicNow();
      double fired = 0;
      const auto timer = timers_.schedule(interval, repeats, [&fired] { fired = monotonicNow(); });
      ASSERT_TRUE(turnUntil([&fired] { return fired > 0; }));
      timer->invalidate();
      EXPECT_GE(fired - asked, interval);
    }
  }
}

TEST_F(RunLoopTimersTest, OneThatJoinsFiresWithTheSecondBeatAtTheLatest) {
  std::vector<char> order;
  timers_.schedule(interval, /*repeats=*/true, [&] {
    order.push_back('a');
    if (order.size() > 1) return;
    timers_.schedule(interval, /*repeats=*/true, [&order] { order.push_back('b'); });
  });
  ASSERT_TRUE(turnUntil([&order] { return std::count(order.begin(), order.end(), 'b') > 0; }));
  EXPECT_LE(std::count(order.begin(), order.end(), 'a'), 3);
}

TEST_F(RunLoopTimersTest, ThoseOfOtherIntervalsKeepTheirOwn) {
  const auto seldom = repeating(interval * 5);
  const auto often = repeating(interval);
  ASSERT_TRUE(turnUntil([&] { return seldom->size() >= 3; }));
  EXPECT_GT(often->size(), seldom->size());
}

TEST_F(RunLoopTimersTest, GoOnInALoopThatOneOfTheirBlocksRuns) {
  const auto other = repeating(interval);
  bool ran = false;
  timers_.schedule(interval, /*repeats=*/false, [&] {
    const auto before = other->size();
    ran = turnUntil([&] { return other->size() > before + 1; });
  });
  ASSERT_TRUE(turnUntil([&ran] { return ran; }));
}

TEST_F(RunLoopTimersTest, ThatAreDroppedFireNoMoreAndReleaseWhatTheyHold) {
  const auto held = std::make_shared<int>();
  const auto timer = timers_.schedule(interval, /*repeats=*/true, [held] {});
  timers_.schedule(interval, /*repeats=*/false, [held] {});
  timers_.drop();
  EXPECT_FALSE(timer->isValid());
  timer->invalidate();
  EXPECT_EQ(held.use_count(), 2) << "the handle that is kept holds its block";
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
