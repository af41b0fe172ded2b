#include <gtest/gtest.h>
#include <thread>

#include "platform/linux/CurrentThread.h"
#include "platform/linux/SerialQueue.h"

namespace vistrel::platform::linux_desktop {
namespace {

TEST(CurrentThread, isTheMainOneNowhereElse) {
  EXPECT_TRUE(isMainThread());
  std::jthread([] { EXPECT_FALSE(isMainThread()); });
}

TEST(CurrentThread, isAnObjectsOwnWhereThatWasMade) {
  const OwnThread here;
  EXPECT_TRUE(here.isCurrent());
  std::jthread([&] {
    EXPECT_FALSE(here.isCurrent());
    EXPECT_TRUE(OwnThread().isCurrent());
  });
}

#ifndef NDEBUG
TEST(CurrentThreadDeathTest, isAsserted) {
  testing::GTEST_FLAG(death_test_style) = "threadsafe";
  const auto queue = SerialQueue::make("test.queue", QualityOfService::standard);
  EXPECT_DEATH(queue->attachment(), "isCurrent");
  EXPECT_DEATH(std::jthread([] { shutDownSerialQueues(); }), "isMainThread");
}
#endif

}  // namespace
}  // namespace vistrel::platform::linux_desktop
