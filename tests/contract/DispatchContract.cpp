#include <algorithm>
#include <atomic>
#include <memory>
#include <utility>

#include "tests/contract/ContractTest.h"

namespace vistrel::contract {
namespace {

using platform::mainQueue;
using platform::QualityOfService;

using DispatchContract = ContractTest;

TEST_F(DispatchContract, MainRunsItsBlocksInOrderAndNotAtOnce) {
  std::vector<int> order;
  for (int i = 0; i < 100; ++i) mainQueue().async([&order, i] { order.push_back(i); });
  EXPECT_TRUE(order.empty());
  ASSERT_TRUE(turnUntil([&order] { return order.size() == 100; }));
  EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
}

TEST_F(DispatchContract, MainIsCurrentOnTheMainThreadAlone) {
  EXPECT_TRUE(mainQueue().isCurrent());
  const auto queue = platform::makeSerialQueue("serial", QualityOfService::standard);
  EXPECT_FALSE(queue->isCurrent());
  struct Seen {
    bool queueCurrent = false;
    bool mainCurrent = true;
    std::atomic<bool> done = false;
  };
  const auto seen = std::make_shared<Seen>();
  queue->async([seen, queue] {
    seen->queueCurrent = queue->isCurrent();
    seen->mainCurrent = mainQueue().isCurrent();
    seen->done = true;
  });
  ASSERT_TRUE(turnUntil([&seen] { return seen->done.load(); }));
  EXPECT_TRUE(seen->queueCurrent);
  EXPECT_FALSE(seen->mainCurrent);
}

TEST_F(DispatchContract, SerialQueueKeepsItsLabelAndOrder) {
  const auto queue = platform::makeSerialQueue("a label", QualityOfService::userInteractive);
  EXPECT_EQ(queue->label(), "a label");
  EXPECT_EQ(queue->qualityOfService(), QualityOfService::userInteractive);
  std::vector<int> order;
  std::atomic<bool> done = false;
  for (int i = 0; i < 1000; ++i) queue->async([&order, i] { order.push_back(i); });
  queue->async([&done] { done = true; });
  ASSERT_TRUE(turnUntil([&done] { return done.load(); }));
  EXPECT_EQ(order.size(), 1000U);
  EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
}

TEST_F(DispatchContract, SerialQueueRunsWhatItWasHandedAfterItsHandleIsGone) {
  std::atomic<bool> done = false;
  auto queue = platform::makeSerialQueue("short", QualityOfService::standard);
  queue->async([&done] { done = true; });
  queue.reset();
  EXPECT_TRUE(turnUntil([&done] { return done.load(); }));
}

TEST_F(DispatchContract, BlockMayHoldTheLastReferenceToItsQueue) {
  std::atomic<bool> done = false;
  auto queue = platform::makeSerialQueue("short", QualityOfService::standard);
  auto* raw = queue.get();
  raw->async([last = std::move(queue), &done]() mutable {
    last.reset();
    done = true;
  });
  EXPECT_TRUE(turnUntil([&done] { return done.load(); }));
}

TEST_F(DispatchContract, DelayedBlocksRunInTheOrderOfTheirTimes) {
  std::vector<std::string> order;
  const auto asked = platform::now();
  double waited = 0;
  platform::mainAsyncAfter(0.05, [&] {
    waited = platform::now().timeIntervalSince(asked);
    order.emplace_back("later");
  });
  platform::mainAsyncAfter(0.01, [&order] { order.emplace_back("sooner"); });
  ASSERT_TRUE(turnUntil([&order] { return order.size() == 2; }));
  EXPECT_THAT(order, testing::ElementsAre("sooner", "later"));
  EXPECT_GE(waited, 0.049);
}

TEST_F(DispatchContract, DelayedBlocksMayBeHandedInFromAnyQueue) {
  struct Seen {
    bool done = false;
    bool onMain = false;
  };
  const auto seen = std::make_shared<Seen>();
  platform::makeSerialQueue("serial", QualityOfService::standard)->async([seen] {
    platform::mainAsyncAfter(0.01, [seen] {
      seen->onMain = mainQueue().isCurrent();
      seen->done = true;
    });
  });
  ASSERT_TRUE(turnUntil([&seen] { return seen->done; }));
  EXPECT_TRUE(seen->onMain);
}

TEST_F(DispatchContract, TimerRepeatsUntilItIsInvalidated) {
  int fired = 0;
  auto timer = platform::scheduledTimer(0.01, true, [&fired] { ++fired; });
  EXPECT_EQ(timer->timeInterval(), 0.01);
  ASSERT_TRUE(turnUntil([&fired] { return fired >= 3; }));
  EXPECT_TRUE(timer->isValid());
  timer->invalidate();
  EXPECT_FALSE(timer->isValid());
  const int before = fired;
  bool later = false;
  platform::mainAsyncAfter(0.05, [&later] { later = true; });
  ASSERT_TRUE(turnUntil([&later] { return later; }));
  EXPECT_EQ(fired, before);
}

TEST_F(DispatchContract, TimerNeverFiresEarlierThanAskedAlsoWhereOthersHaveItsInterval) {
  constexpr double interval = 0.02;
  std::vector<double> waits;
  for (int i = 0; i < 4; ++i) {
    bool later = false;
    const auto asked = platform::now();
    const auto isFirst = std::make_shared<bool>(true);
    platform::scheduledTimer(interval, true, [&waits, asked, isFirst] {
      if (!std::exchange(*isFirst, false)) return;
      waits.push_back(platform::now().timeIntervalSince(asked));
    });
    platform::mainAsyncAfter(interval / 4, [&later] { later = true; });
    ASSERT_TRUE(turnUntil([&later] { return later; }));
  }
  ASSERT_TRUE(turnUntil([&waits] { return waits.size() == 4; }));
  EXPECT_THAT(waits, testing::Each(testing::Ge(interval * 0.999)));
}

TEST_F(DispatchContract, TimerGoesOnWithoutItsHandle) {
  const auto fired = std::make_shared<int>(0);
  std::weak_ptr<platform::Timer> timer =
      platform::scheduledTimer(0.01, true, [fired] { ++*fired; });
  ASSERT_TRUE(turnUntil([&fired] { return *fired >= 2; }));
  ASSERT_FALSE(timer.expired());
  timer.lock()->invalidate();
}

TEST_F(DispatchContract, TimerThatDoesNotRepeatFiresOnce) {
  int fired = 0;
  const auto timer = platform::scheduledTimer(0.01, false, [&fired] { ++fired; });
  bool later = false;
  ASSERT_TRUE(turnUntil([&fired] { return fired > 0; }));
  platform::mainAsyncAfter(0.05, [&later] { later = true; });
  ASSERT_TRUE(turnUntil([&later] { return later; }));
  EXPECT_EQ(fired, 1);
  EXPECT_FALSE(timer->isValid());
}

TEST_F(DispatchContract, TimerMayInvalidateItselfAsItFires) {
  int fired = 0;
  std::shared_ptr<platform::Timer> timer;
  timer = platform::scheduledTimer(0.01, true, [&] {
    ++fired;
    timer->invalidate();
  });
  bool later = false;
  ASSERT_TRUE(turnUntil([&fired] { return fired > 0; }));
  platform::mainAsyncAfter(0.05, [&later] { later = true; });
  ASSERT_TRUE(turnUntil([&later] { return later; }));
  EXPECT_EQ(fired, 1);
}

TEST_F(DispatchContract, SemaphoreIsSignalledFromAQueueWhileMainWaits) {
  const auto semaphore = platform::makeSemaphore(0);
  const auto queue = platform::makeSerialQueue("serial", QualityOfService::standard);
  queue->async([semaphore] { semaphore->signal(); });
  EXPECT_TRUE(semaphore->wait(60));
}

TEST_F(DispatchContract, SemaphoreGivesUpWithoutRunningMain) {
  const auto semaphore = platform::makeSemaphore(0);
  bool ran = false;
  mainQueue().async([&ran] { ran = true; });
  const auto before = platform::now();
  EXPECT_FALSE(semaphore->wait(0.05));
  EXPECT_GE(platform::now().timeIntervalSince(before), 0.049);
  EXPECT_FALSE(ran);
  ASSERT_TRUE(turnUntil([&ran] { return ran; }));
}

TEST_F(DispatchContract, SemaphoreCounts) {
  const auto semaphore = platform::makeSemaphore(1);
  semaphore->signal();
  EXPECT_TRUE(semaphore->wait(0));
  EXPECT_TRUE(semaphore->wait(0));
  EXPECT_FALSE(semaphore->wait(0));
}

struct NotesItsEnd {
  explicit NotesItsEnd(std::atomic<int>& ending) : ending_(ending) {}
  ~NotesItsEnd() { ending_ = mainQueue().isCurrent() ? 1 : 2; }
  std::atomic<int>& ending_;
};

TEST_F(DispatchContract, ObjectOwnedByMainEndsThereWhoeverReleasesItLast) {
  std::atomic<int> ending = 0;
  auto object = platform::makeOwnedByMain<NotesItsEnd>(ending);
  platform::makeSerialQueue("serial", QualityOfService::standard)
      ->async([last = std::move(object)]() mutable { last.reset(); });
  ASSERT_TRUE(turnUntil([&ending] { return ending != 0; }));
  EXPECT_EQ(ending, 1);
}

TEST_F(DispatchContract, ClockCountsFromTheYear2001AndNeverRunsBackwards) {
  constexpr double startOf2010 = 283'996'800;
  auto last = platform::now();
  EXPECT_GT(last.secondsSinceReference, startOf2010);
  for (int i = 0; i < 1000; ++i) {
    const auto now = platform::now();
    ASSERT_GE(now.timeIntervalSince(last), 0);
    last = now;
  }
}

}  // namespace
}  // namespace vistrel::contract
