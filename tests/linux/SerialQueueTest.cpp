#include <array>
#include <atomic>
#include <future>
#include <gtest/gtest.h>
#include <pthread.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "platform/linux/SerialQueue.h"
#include "tests/support/Poll.h"
#include "tests/support/ProcessEntries.h"

namespace vistrel::platform::linux_desktop {
namespace {

using testbed::eventually;

std::shared_ptr<SerialQueue> makeQueue() {
  return SerialQueue::make("test.queue", QualityOfService::userInteractive);
}

/// Returns once the queue has run everything handed in before.
void drain(SerialQueue& queue) {
  std::promise<void> done;
  queue.async([&] { done.set_value(); });
  done.get_future().wait();
}

TEST(SerialQueue, keepsItsLabelAndQuality) {
  const auto queue = makeQueue();
  EXPECT_EQ(queue->label(), "test.queue");
  EXPECT_EQ(queue->qualityOfService(), QualityOfService::userInteractive);
}

TEST(SerialQueue, runsBlocksInOrderOnOneThreadOfItsOwn) {
  const auto queue = makeQueue();
  std::vector<int> order;
  std::vector<std::thread::id> threads;
  for (int i = 0; i < 1000; ++i) {
    queue->async([&, i] {
      order.push_back(i);
      threads.push_back(std::this_thread::get_id());
    });
  }
  drain(*queue);
  for (int i = 0; i < 1000; ++i) {
    ASSERT_EQ(order[static_cast<std::size_t>(i)], i);
    ASSERT_EQ(threads[static_cast<std::size_t>(i)], threads.front());
  }
  EXPECT_NE(threads.front(), std::this_thread::get_id());
}

TEST(SerialQueue, takesBlocksFromManyThreads) {
  const auto queue = makeQueue();
  int count = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int j = 0; j < 500; ++j) queue->async([&count] { ++count; });
    });
  }
  for (auto& each : threads) each.join();
  drain(*queue);
  EXPECT_EQ(count, 2000);
}

TEST(SerialQueue, knowsWhetherItIsCurrent) {
  const auto queue = makeQueue();
  const auto other = makeQueue();
  EXPECT_FALSE(queue->isCurrent());
  bool own = false;
  bool others = true;
  queue->async([&] {
    own = queue->isCurrent();
    others = other->isCurrent();
  });
  drain(*queue);
  EXPECT_TRUE(own);
  EXPECT_FALSE(others);
}

TEST(SerialQueue, runsWhatWasHandedInBeforeItsRelease) {
  std::atomic<int> count = 0;
  std::atomic<bool> go = false;
  auto queue = makeQueue();
  queue->async([&] {
    while (!go) std::this_thread::yield();
  });
  for (int i = 0; i < 100; ++i) queue->async([&] { ++count; });
  queue.reset();
  go = true;
  EXPECT_TRUE(eventually([&] { return count == 100; }));
}

TEST(SerialQueue, canBeReleasedByItsOwnBlock) {
  std::atomic<bool> ran = false;
  auto queue = makeQueue();
  auto& reference = *queue;
  reference.async([queue = std::move(queue), &ran]() mutable {
    queue.reset();
    ran = true;
  });
  EXPECT_TRUE(eventually([&] { return ran.load(); }));
}

TEST(SerialQueue, isThereForWhatStillRunsOnItAfterItsRelease) {
  auto queue = makeQueue();
  std::promise<void> released;
  std::promise<bool> wasCurrent;
  queue->async([&queue = *queue, &released, &wasCurrent] {
    released.get_future().wait();
    queue.asyncAt(monotonicNow(), [] {});
    queue.unwatch(-1);
    wasCurrent.set_value(queue.isCurrent());
  });
  queue.reset();
  released.set_value();
  EXPECT_TRUE(wasCurrent.get_future().get());
}

TEST(SerialQueue, leavesNothingOpenAfterItsRelease) {
  drain(*makeQueue());
  const auto before = testbed::openDescriptors(getpid());
  for (int i = 0; i < 50; ++i) drain(*makeQueue());
  // The last ones' threads may still be ending; a further queue's start looks after those before.
  EXPECT_TRUE(eventually([&] {
    drain(*makeQueue());
    return testbed::openDescriptors(getpid()) <= before + 1;
  }));
}

TEST(SerialQueue, runsTimedBlocksInTheOrderOfTheirTimes) {
  const auto queue = makeQueue();
  std::vector<int> order;
  std::promise<void> done;
  const double now = monotonicNow();
  queue->asyncAt(now + 0.03, [&] {
    order.push_back(2);
    done.set_value();
  });
  queue->asyncAt(now + 0.01, [&] { order.push_back(1); });
  queue->asyncAt(now - 1, [&] { order.push_back(0); });
  done.get_future().wait();
  EXPECT_EQ(order, (std::vector<int>{0, 1, 2}));
  EXPECT_GE(monotonicNow(), now + 0.03);
}

TEST(SerialQueue, callsBackWhenADescriptorCanBeRead) {
  std::array<int, 2> ends{};
  ASSERT_EQ(pipe(ends.data()), 0);
  const auto queue = makeQueue();
  std::atomic<int> calls = 0;
  queue->async([&] { queue->watch(ends[0], [&] { ++calls; }); });
  drain(*queue);
  const int before = calls;
  ASSERT_EQ(write(ends[1], "x", 1), 1);
  EXPECT_TRUE(eventually([&] { return calls > before; }));
  queue->async([&] { queue->unwatch(ends[0]); });
  drain(*queue);
  const int after = calls;
  drain(*queue);
  EXPECT_EQ(calls, after);
  for (const int end : ends) close(end);
}

TEST(SerialQueue, looksAtDescriptorsBeforeEachWait) {
  std::array<int, 2> ends{};
  ASSERT_EQ(pipe(ends.data()), 0);
  const auto queue = makeQueue();
  std::atomic<int> calls = 0;
  queue->async([&] { queue->watch(ends[0], [&] { ++calls; }); });
  EXPECT_TRUE(eventually([&] { return calls > 0; }));
  const int before = calls;
  queue->async([] {});
  EXPECT_TRUE(eventually([&] { return calls > before; }));
  queue->async([&] { queue->unwatch(ends[0]); });
  drain(*queue);
  for (const int end : ends) close(end);
}

/// Tells on which thread it went.
struct Attached {
  ~Attached() { thread.set_value(std::this_thread::get_id()); }
  std::promise<std::thread::id>& thread;
};

TEST(SerialQueue, releasesItsAttachmentOnItsOwnThread) {
  std::promise<std::thread::id> queueThread;
  std::promise<std::thread::id> releasingThread;
  auto queue = makeQueue();
  queue->async([&] {
    queue->attachment() = std::shared_ptr<Attached>(new Attached{releasingThread});
    queueThread.set_value(std::this_thread::get_id());
  });
  const auto expected = queueThread.get_future().get();
  queue.reset();
  EXPECT_EQ(releasingThread.get_future().get(), expected);
}

TEST(SerialQueue, canBeWaitedFor) {
  const auto queue = makeQueue();
  bool ran = false;
  asyncAndWait(*queue, [&] { ran = true; });
  EXPECT_TRUE(ran);
}

/// While this lives no thread can be started: none gets a stack so large.
class NoThreads {
 public:
  NoThreads() {
    pthread_attr_init(&former_);
    pthread_getattr_default_np(&former_);
    pthread_attr_t endless;
    pthread_attr_init(&endless);
    pthread_attr_setstacksize(&endless, std::size_t{1} << 50);
    pthread_setattr_default_np(&endless);
    pthread_attr_destroy(&endless);
  }
  NoThreads(const NoThreads&) = delete;
  NoThreads& operator=(const NoThreads&) = delete;
  ~NoThreads() {
    pthread_setattr_default_np(&former_);
    pthread_attr_destroy(&former_);
  }

 private:
  pthread_attr_t former_{};
};

TEST(SerialQueue, withoutAThreadRunsNothingAndHoldsNobodyUp) {
  const auto held = std::make_shared<int>();
  {
    const NoThreads noThreads;
    const auto queue = makeQueue();
    EXPECT_FALSE(queue->isRunning());
    queue->async([held] { FAIL(); });
    asyncAndWait(*queue, [held] { FAIL(); });
  }
  EXPECT_EQ(held.use_count(), 1);
  const auto later = makeQueue();
  EXPECT_TRUE(later->isRunning());
  drain(*later);
}

TEST(SerialQueue, holdsNobodyUpWhoWaitsForItAfterTheShutDown) {
  const auto queue = makeQueue();
  shutDownSerialQueues();
  bool ran = false;
  asyncAndWait(*queue, [&] { ran = true; });
  EXPECT_FALSE(ran);
}

TEST(SerialQueue, beginsNothingAfterTheShutDown) {
  const auto queue = makeQueue();
  std::atomic<int> late = 0;
  const auto held = std::make_shared<int>();
  queue->asyncAt(monotonicNow() + 3600, [held, &late] { ++late; });
  shutDownSerialQueues();
  queue->async([held, &late] { ++late; });
  EXPECT_EQ(late, 0);
  EXPECT_EQ(held.use_count(), 1) << "blocks that cannot run are dropped";
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
