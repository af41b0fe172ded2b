#include <gtest/gtest.h>

#include "platform/linux/qt/windows/Reach.h"

namespace vistrel::platform::linux_desktop {
namespace {

const std::vector<Screen> oneScreen = {
    {.frame = rect(0, 0, 1440, 900), .visibleFrame = rect(0, 25, 1440, 850)}};

TEST(Reachable, AWindowIsWhoseTopEdgeShowsEnough) {
  EXPECT_TRUE(isReachable(rect(490, 240, 460, 420), oneScreen));
  EXPECT_TRUE(isReachable(rect(-380, 240, 460, 420), oneScreen)) << "80 points of it show";
  EXPECT_TRUE(isReachable(rect(490, -371, 460, 420), oneScreen)) << "24 points of it show";
}

TEST(Reachable, AWindowIsNotWhoseTopEdgeIsOutOfReach) {
  EXPECT_FALSE(isReachable(rect(-381, 240, 460, 420), oneScreen));
  EXPECT_FALSE(isReachable(rect(490, -372, 460, 420), oneScreen));
  EXPECT_FALSE(isReachable(rect(490, 600, 460, 420), oneScreen)) << "its top edge is above";
  EXPECT_FALSE(isReachable(rect(2000, 240, 460, 420), oneScreen));
  EXPECT_FALSE(isReachable(rect(490, 240, 460, 420), {}));
}

TEST(Reachable, AWindowMaySpanScreensIfOneShowsEnough) {
  auto screens = oneScreen;
  screens.push_back({.frame = rect(1440, 0, 800, 600), .visibleFrame = rect(1440, 0, 800, 600)});
  EXPECT_TRUE(isReachable(rect(1400, 100, 460, 420), screens));
}

const std::vector<Screen> twoScreens{
    {.frame = rect(0, 0, 1440, 900), .visibleFrame = rect(0, 40, 1440, 835)},
    {.frame = rect(1440, 200, 1920, 1080), .visibleFrame = rect(1440, 200, 1920, 1080)}};

TEST(Credible, AFrameIsThatAPersonCouldHaveGivenToTheWindow) {
  constexpr Size smallest{400, 239};
  EXPECT_TRUE(isCredible(rect(490, 240, 460, 439), smallest, twoScreens));
  EXPECT_TRUE(isCredible(rect(490, 240, 399.5, 238.5), smallest, twoScreens));
  EXPECT_TRUE(isCredible(rect(0, 0, 3360, 1280), smallest, twoScreens)) << "over both screens";
  EXPECT_FALSE(isCredible(rect(490, 240, 1, 439), smallest, twoScreens));
  EXPECT_FALSE(isCredible(rect(490, 240, 460, 1), smallest, twoScreens));
  EXPECT_FALSE(isCredible(rect(0, 100, 30000, 439), smallest, twoScreens));
  EXPECT_FALSE(isCredible(rect(0, -29000, 460, 29439), smallest, twoScreens));
  EXPECT_FALSE(isCredible(rect(4000, 240, 460, 439), smallest, twoScreens)) << "out of reach";
  EXPECT_FALSE(isCredible(rect(490, 240, 460, 439), smallest, {}));
}

TEST(BroughtIntoReach, AWindowInReachStaysWhereItIs) {
  for (const Rect& frame : {rect(32, 600, 340, 196), rect(-200, 600, 340, 196),
                            rect(1400, 600, 340, 196), rect(100, -100, 340, 196)}) {
    EXPECT_EQ(broughtIntoReach(frame, twoScreens), frame);
  }
}

TEST(BroughtIntoReach, AWindowComesToTheNearestEdgeOfTheNearestScreen) {
  EXPECT_EQ(broughtIntoReach(rect(4000, 700, 340, 196), twoScreens), rect(3020, 700, 340, 196));
  EXPECT_EQ(broughtIntoReach(rect(-900, -700, 340, 196), twoScreens), rect(0, 40, 340, 196));
  EXPECT_EQ(broughtIntoReach(rect(100, 1500, 340, 196), twoScreens), rect(100, 679, 340, 196));
  EXPECT_EQ(broughtIntoReach(rect(100, 700, 340, 196), twoScreens), rect(100, 679, 340, 196))
      << "its title bar was above the visible frame";
}

TEST(BroughtIntoReach, OfAWindowThatIsTooLargeTheTopLeftCornerShows) {
  EXPECT_EQ(broughtIntoReach(rect(-3000, -3000, 2000, 1500), twoScreens),
            rect(0, -625, 2000, 1500));
}

TEST(BroughtIntoReach, AWindowStaysWhereThereIsNoScreen) {
  EXPECT_EQ(broughtIntoReach(rect(4000, 700, 340, 196), {}), rect(4000, 700, 340, 196));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
