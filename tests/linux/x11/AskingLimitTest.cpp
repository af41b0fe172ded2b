#include <gtest/gtest.h>

#include "platform/linux/x11/panel/AskingLimit.h"

namespace vistrel::platform::linux_desktop {
namespace {

TEST(AskingLimit, LetsNobodyAskMoreOftenThanItSays) {
  AskingLimit limit(3, 10);
  EXPECT_TRUE(limit.mayAsk(100));
  EXPECT_TRUE(limit.mayAsk(100.5));
  EXPECT_TRUE(limit.mayAsk(110));
  EXPECT_FALSE(limit.mayAsk(110.1));
}

TEST(AskingLimit, EndsForGoodOnceItIsReached) {
  AskingLimit limit(3, 10);
  for (const double now : {0, 1, 2}) EXPECT_TRUE(limit.mayAsk(now));
  EXPECT_FALSE(limit.mayAsk(13));
  EXPECT_FALSE(limit.mayAsk(1000));
}

TEST(AskingLimit, NeverEndsForThoseWhoAskSeldom) {
  AskingLimit limit(3, 10);
  for (int time = 0; time < 20; ++time) EXPECT_TRUE(limit.mayAsk(6.0 * time)) << time;
}

TEST(AskingLimit, BeginsAnewWhenItIsRenewed) {
  AskingLimit limit(3, 10);
  for (const double now : {0, 1, 2}) EXPECT_TRUE(limit.mayAsk(now));
  limit.renew();
  for (const double now : {3, 4, 5}) EXPECT_TRUE(limit.mayAsk(now));
  EXPECT_FALSE(limit.mayAsk(6));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
