#include <gtest/gtest.h>

#include "platform/linux/x11/panel/PanelCover.h"

namespace vistrel::platform::linux_desktop {
namespace {

constexpr PixelRect panel{100, 100, 300, 200};

TEST(PanelCover, IsALargerPanelAround) { EXPECT_TRUE(isWhollyUnder(panel, {{50, 50, 400, 300}})); }

TEST(PanelCover, IsNothingBeside) {
  EXPECT_FALSE(isWhollyUnder(panel, {}));
  EXPECT_FALSE(isWhollyUnder(panel, {{400, 100, 300, 200}}));
  EXPECT_FALSE(isWhollyUnder(panel, {{0, 0, 100, 600}}));
}

TEST(PanelCover, IsNotOneThatLeavesARowOrColumn) {
  EXPECT_FALSE(isWhollyUnder(panel, {{101, 50, 400, 300}}));
  EXPECT_FALSE(isWhollyUnder(panel, {{50, 101, 400, 300}}));
  EXPECT_FALSE(isWhollyUnder(panel, {{50, 50, 349, 300}}));
  EXPECT_FALSE(isWhollyUnder(panel, {{50, 50, 400, 249}}));
}

TEST(PanelCover, IsMadeOfSeveral) {
  EXPECT_TRUE(isWhollyUnder(panel, {{0, 0, 300, 400}, {200, 0, 300, 400}}));
  EXPECT_FALSE(isWhollyUnder(panel, {{0, 0, 250, 400}, {251, 0, 300, 400}}));
}

TEST(PanelCover, HasRoundCorners) {
  EXPECT_FALSE(isWhollyUnder(panel, {{98, 98, 400, 400}}));
  EXPECT_FALSE(isWhollyUnder(panel, {{0, 0, 402, 302}}));
  EXPECT_TRUE(isWhollyUnder(panel, {{98, 98, 400, 400}, {0, 0, 250, 300}}));
}

TEST(PanelCover, IsAnotherPanelInTheSamePlace) { EXPECT_TRUE(isWhollyUnder(panel, {panel})); }

TEST(PanelCover, IsOneThatSharesItsCorners) {
  EXPECT_TRUE(isWhollyUnder(panel, {{100, 100, 300, 400}}));
  EXPECT_TRUE(isWhollyUnder(panel, {{100, 100, 500, 400}}));
  EXPECT_FALSE(isWhollyUnder(panel, {{101, 100, 500, 400}}));
  EXPECT_FALSE(isWhollyUnder(panel, {{100, 100, 301, 201}}));
}

TEST(PanelCover, MayBeATitleBar) {
  constexpr PixelRect rolledUp{100, 100, 300, 26};
  EXPECT_TRUE(isWhollyUnder(rolledUp, {panel}));
  EXPECT_TRUE(isWhollyUnder(rolledUp, {rolledUp}));
  EXPECT_FALSE(isWhollyUnder(panel, {rolledUp}));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
