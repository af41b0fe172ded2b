#include <gtest/gtest.h>

#include "platform/linux/qt/panel/ClickCounter.h"

namespace vistrel::platform::linux_desktop {
namespace {

constexpr ClickCounter::Limits limits{.milliseconds = 400, .distance = 5};

TEST(ClickCounter, FirstPressIsASingleClick) {
  ClickCounter clicks;
  EXPECT_EQ(clicks.press({100, 100}, 0, limits), 1);
}

TEST(ClickCounter, QuickPressesAtOnePlaceCountUp) {
  ClickCounter clicks;
  EXPECT_EQ(clicks.press({100, 100}, 1000, limits), 1);
  EXPECT_EQ(clicks.press({100, 100}, 1200, limits), 2);
  EXPECT_EQ(clicks.press({100, 100}, 1400, limits), 3);
  EXPECT_EQ(clicks.press({100, 100}, 1600, limits), 4);
}

TEST(ClickCounter, LimitsAreInclusive) {
  ClickCounter clicks;
  clicks.press({100, 100}, 1000, limits);
  EXPECT_EQ(clicks.press({105, 95}, 1400, limits), 2);
}

TEST(ClickCounter, APressTooLateOrTooFarStartsAnew) {
  ClickCounter clicks;
  clicks.press({100, 100}, 1000, limits);
  EXPECT_EQ(clicks.press({100, 100}, 1401, limits), 1);
  EXPECT_EQ(clicks.press({105.5, 100}, 1500, limits), 1);
  EXPECT_EQ(clicks.press({105.5, 105.6}, 1600, limits), 1);
}

TEST(ClickCounter, DistanceIsMeasuredFromTheLastPress) {
  ClickCounter clicks;
  clicks.press({100, 100}, 1000, limits);
  EXPECT_EQ(clicks.press({104, 100}, 1100, limits), 2);
  EXPECT_EQ(clicks.press({108, 100}, 1200, limits), 3);
}

TEST(ClickCounter, AClockSetBackStartsAnew) {
  ClickCounter clicks;
  clicks.press({100, 100}, 1000, limits);
  EXPECT_EQ(clicks.press({100, 100}, 900, limits), 1);
}

TEST(ClickCounter, DragsAndReleaseShareTheCountOfTheirPress) {
  ClickCounter clicks;
  clicks.press({100, 100}, 1000, limits);
  clicks.press({100, 100}, 1100, limits);
  EXPECT_EQ(clicks.count(), 2);
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
