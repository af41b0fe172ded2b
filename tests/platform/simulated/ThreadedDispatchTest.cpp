#include <atomic>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <thread>

#include "platform/simulated/ThreadedDispatch.h"

namespace vistrel::platform::simulated {
namespace {

using testing::ElementsAre;

constexpr double generously = 60;

class ThreadedDispatchTest : public testing::Test {
 protected:
  ~ThreadedDispatchTest() override { dispatch_.drain(); }

  bool turnUntil(const std::function<bool()>& condition) {
    return dispatch_.turnMainUntil(condition, generously);
  }

  ThreadedDispatch dispatch_;
};

TEST_F(ThreadedDispatchTest, QueuesRunTheirBlocksInOrderOnThreadsOfTheirOwn) {
  const auto queue = dispatch_.makeSerialQueue("serial", QualityOfService::standard);
  std::vector<int> order;  // touched on the queue, then read after it said so
  std::atomic<bool> done = false;
  std::thread::id thread;
  for (int i = 0; i < 1000; ++i) queue->async([&order, i] { order.push_back(i); });
  queue->async([&] {
    thread = std::this_thread::get_id();
    done = true;
  });
  ASSERT_TRUE(turnUntil([&done] { return done.load(); }));
  EXPECT_NE(thread, std::this_thread::get_id());
  EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
  EXPECT_EQ(order.size(), 1000U);
}

TEST_F(ThreadedDispatchTest, EachQueueIsCurrentOnItsOwnThreadAlone) {
  const auto queue = dispatch_.makeSerialQueue("serial", QualityOfService::standard);
  std::vector<bool> seen;
  queue->async([&] {
    const bool onQueue = queue->isCurrent();
    const bool onMain = dispatch_.mainQueue().isCurrent();
    const bool onService = dispatch_.serviceQueue().isCurrent();
    dispatch_.mainQueue().async([&seen, onQueue, onMain, onService] {
      seen = {onQueue, onMain, onService};
    });
  });
  ASSERT_TRUE(turnUntil([&seen] { return !seen.empty(); }));
  EXPECT_THAT(seen, ElementsAre(true, false, false));
  EXPECT_TRUE(dispatch_.mainQueue().isCurrent());
  EXPECT_FALSE(queue->isCurrent());
}

TEST_F(ThreadedDispatchTest, BlockMayDropItsOwnQueue) {
  auto queue = dispatch_.makeSerialQueue("serial", QualityOfService::standard);
  std::atomic<bool> ran = false;
  DispatchQueue* raw = queue.get();
  raw->async([last = std::move(queue), &ran]() mutable {
    last.reset();
    ran = true;
  });
  EXPECT_TRUE(turnUntil([&ran] { return ran.load(); }));
}

TEST_F(ThreadedDispatchTest, ManyQueuesComeAndGo) {
  std::atomic<int> ran = 0;
  for (int i = 0; i < 500; ++i) {
    dispatch_.makeSerialQueue("short", QualityOfService::standard)->async([&ran] { ++ran; });
  }
  EXPECT_TRUE(turnUntil([&ran] { return ran == 500; }));
}

TEST_F(ThreadedDispatchTest, MainRunsOnlyWhereItIsTurned) {
  std::thread::id thread;
  dispatch_.serviceQueue().async([this, &thread] {
    dispatch_.mainQueue().async([&thread] { thread = std::this_thread::get_id(); });
  });
  ASSERT_TRUE(turnUntil([&thread] { return thread != std::thread::id(); }));
  EXPECT_EQ(thread, std::this_thread::get_id());
}

TEST_F(ThreadedDispatchTest, SemaphoreIsSignalledFromAnotherThread) {
  const auto semaphore = dispatch_.makeSemaphore(0);
  dispatch_.serviceQueue().async([semaphore] { semaphore->signal(); });
  EXPECT_TRUE(semaphore->wait(generously));
  EXPECT_FALSE(semaphore->wait(0));
}

TEST_F(ThreadedDispatchTest, DelayedBlocksAndTimersRunInTime) {
  std::vector<std::string> order;
  dispatch_.mainAsyncAfter(0.02, [&order] { order.emplace_back("second"); });
  dispatch_.mainAsyncAfter(0.01, [&order] { order.emplace_back("first"); });
  int fired = 0;
  const auto timer = dispatch_.scheduledTimer(0.005, true, [&fired] { ++fired; });
  ASSERT_TRUE(turnUntil([&] { return order.size() == 2 && fired > 2; }));
  EXPECT_THAT(order, ElementsAre("first", "second"));
  timer->invalidate();
}

TEST_F(ThreadedDispatchTest, DrainingRunsEverythingButLaterMainBlocks) {
  std::atomic<int> ran = 0;
  dispatch_.mainAsyncAfter(generously, [&ran] { ran += 100; });
  dispatch_.serviceQueue().asyncAfter(generously, [this, &ran] {
    ++ran;
    dispatch_.mainQueue().async([&ran] { ++ran; });
  });
  const auto queue = dispatch_.makeSerialQueue("serial", QualityOfService::standard);
  for (int i = 0; i < 100; ++i) queue->async([&ran] { ++ran; });
  dispatch_.drain();
  EXPECT_EQ(ran, 102);
}

TEST_F(ThreadedDispatchTest, ClockNeverRunsBackwards) {
  Date last = dispatch_.now();
  for (int i = 0; i < 10000; ++i) {
    const Date now = dispatch_.now();
    ASSERT_GE(now.timeIntervalSince(last), 0);
    last = now;
  }
}

}  // namespace
}  // namespace vistrel::platform::simulated
