#include <gtest/gtest.h>

#include "platform/linux/x11/parking/Sight.h"

namespace vistrel::platform::linux_desktop {
namespace {

constexpr PixelRect main{0, 0, 1280, 1024};

TEST(Sight, IsOfAWindowThatAManagerKeepsOnTheScreen) {
  EXPECT_TRUE(isInSight({880, 724, 400, 300}, {main}));
  EXPECT_TRUE(isInSight({1080, 724, 400, 300}, {main}));
}

TEST(Sight, IsNotOfOneInTheCornerNorOfOneBesideAllMonitors) {
  EXPECT_FALSE(isInSight({1240, 984, 400, 300}, {main}));
  EXPECT_FALSE(isInSight({1152, 922, 400, 300}, {main})) << "a tenth of the screen";
  EXPECT_FALSE(isInSight({1288, 8, 400, 300}, {main}));
}

TEST(Sight, CountsEachMonitor) {
  constexpr PixelRect right{1280, 0, 1024, 768};
  EXPECT_TRUE(isInSight({1288, 8, 400, 300}, {main, right}));
  EXPECT_FALSE(isInSight({1240, 984, 400, 300}, {main, right}));
}

TEST(Sight, EndsAtAQuarter) {
  EXPECT_FALSE(isInSight({1180, 0, 400, 300}, {main}));
  EXPECT_TRUE(isInSight({1179, 0, 400, 300}, {main}));
}

TEST(Sight, IsOfNothingWhereNoMonitorIsKnown) {
  EXPECT_FALSE(isInSight({100, 100, 400, 300}, {}));
  EXPECT_FALSE(isInSight({100, 100, 400, 300}, {{}}));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
