#include <gtest/gtest.h>

#include "mirror/Freshness.h"

namespace vistrel {
namespace {

using platform::Date;

TEST(Freshness, FrameOfAtMostOneAndAHalfSecondsIsFresh) {
  EXPECT_FALSE(isStale(Date{1000}, Date{1000}));
  EXPECT_FALSE(isStale(Date{1000}, Date{1001.5}));
}

TEST(Freshness, OlderFrameIsStale) {
  EXPECT_TRUE(isStale(Date{1000}, Date{1001.6}));
  EXPECT_TRUE(isStale(Date{1000}, Date{1001.5000001}));
}

TEST(Freshness, NoFrameYetIsStale) { EXPECT_TRUE(isStale(Date::distantPast(), Date{0})); }

TEST(Freshness, FrameFromTheFutureIsFresh) { EXPECT_FALSE(isStale(Date{1000}, Date{900})); }

}  // namespace
}  // namespace vistrel
