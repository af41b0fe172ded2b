#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>

#include "platform/linux/x11/picture/MipLevels.h"

namespace vistrel::platform::linux_desktop {
namespace {

TEST(MipLevels, drawAPictureOfTheSameSizeOrLargerFromItself) {
  EXPECT_EQ(levelsFor({800, 600}, {800, 600}), (LevelBlend{0, 0}));
  EXPECT_EQ(levelsFor({800, 600}, {1600, 1200}), (LevelBlend{0, 0}));
}

TEST(MipLevels, drawExactHalvesFromOneLevelAlone) {
  EXPECT_EQ(levelsFor({800, 600}, {400, 300}), (LevelBlend{1, 0}));
  EXPECT_EQ(levelsFor({800, 600}, {200, 150}), (LevelBlend{2, 0}));
}

TEST(MipLevels, leaveBlendingOutCloseToALevel) {
  EXPECT_EQ(levelsFor({1900, 1050}, {520, 287}), (LevelBlend{2, 0}));
}

TEST(MipLevels, blendTwoLevelsBetweenThem) {
  const auto blend = levelsFor({1000, 1000}, {354, 354});
  EXPECT_EQ(blend.finer, 1);
  EXPECT_NEAR(blend.coarserWeight, 0.5, 0.01);
  EXPECT_EQ(blend.coarsest(), 2);
}

TEST(MipLevels, goFromOneToTheNextWithoutAJump) {
  constexpr int source = 20000;
  double former = 0;
  for (int target = source; target > source / 32; --target) {
    const auto blend = levelsFor({source, source}, {target, target});
    const double level = blend.finer + blend.coarserWeight;
    const double step = std::log2((target + 1.0) / target);
    ASSERT_GE(level, former);
    ASSERT_LE(level - former, 1.5 * step) << target;
    former = level;
  }
  EXPECT_NEAR(former, 5, 0.01);
}

TEST(MipLevels, aloneMissNoPixelUpToAHalf) {
  EXPECT_EQ(finestWholeLevel({100, 100}, {200, 200}), 0);
  EXPECT_EQ(finestWholeLevel({100, 100}, {100, 100}), 0);
  EXPECT_EQ(finestWholeLevel({100, 100}, {50, 50}), 0);
  EXPECT_EQ(finestWholeLevel({100, 100}, {49, 49}), 1);
  EXPECT_EQ(finestWholeLevel({100, 100}, {24, 24}), 2);
}

TEST(MipLevels, endWhereOneSideIsASinglePixel) {
  EXPECT_EQ(levelsFor({1000, 2}, {10, 1}), (LevelBlend{1, 0}));
  EXPECT_EQ(levelsFor({1, 1}, {1, 1}), (LevelBlend{0, 0}));
  EXPECT_EQ(sizeOfLevel({5, 1}, 1), (PixelSize{2, 1}));
}

TEST(MipLevels, coverEveryChangedPixelInTheNextLevel) {
  EXPECT_EQ(changedInNextLevel({3, 4, 2, 1}, {50, 50}), (PixelRect{1, 2, 2, 1}));
  EXPECT_EQ(changedInNextLevel({99, 99, 2, 2}, {50, 50}), (PixelRect{49, 49, 1, 1}));
  EXPECT_TRUE(isEmpty(changedInNextLevel({100, 0, 1, 1}, {50, 50})));
}

/// Whether drawing the pixel at `x` of the target looks at the pixel `changed` of the source, by
/// the definition of the filters: each level halves, the last step is bilinear.
bool dependsOn(int x, int changed, int source, int target, int level) {
  const int width = std::max(1, source >> level);
  const double center = (x + 0.5) * source / target / (1 << level) - 0.5;
  for (const int tap :
       {static_cast<int>(std::floor(center)), static_cast<int>(std::floor(center)) + 1}) {
    const int clamped = std::clamp(tap, 0, width - 1);
    if (changed >> level == clamped) return true;
  }
  return false;
}

TEST(MipLevels, coverEveryPixelOfTheTargetThatAChangeReaches) {
  std::mt19937 random(11);
  const auto below = [&](int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); };
  for (int round = 0; round < 2000; ++round) {
    const int source = 1 + below(700);
    const int target = 1 + below(400);
    const int changed = below(source);
    const auto blend = levelsFor({source, source}, {target, target});
    const auto area = changedInTarget({changed, changed, 1, 1}, {source, source}, {target, target},
                                      blend.coarsest());
    for (int x = 0; x < target; ++x) {
      for (int level = blend.finer; level <= blend.coarsest(); ++level) {
        if (!dependsOn(x, changed, source, target, level)) continue;
        ASSERT_TRUE(x >= area.x && x < area.x + area.width)
            << source << " to " << target << ", pixel " << changed << " at " << x;
      }
    }
  }
}

TEST(MipLevels, keepASmallChangeSmall) {
  const auto area = changedInTarget({900, 500, 20, 20}, {1900, 1050}, {520, 287}, 2);
  EXPECT_LT(area.width * area.height, 200);
}

TEST(AspectFit, putsBarsAboveAndBelowAWidePicture) {
  EXPECT_EQ(aspectFit({200, 100}, {10, 20, 100, 100}), (PixelRect{10, 45, 100, 50}));
}

TEST(AspectFit, putsBarsBesideATallPicture) {
  EXPECT_EQ(aspectFit({100, 200}, {10, 20, 100, 100}), (PixelRect{35, 20, 50, 100}));
}

TEST(AspectFit, enlargesASmallPicture) {
  EXPECT_EQ(aspectFit({10, 5}, {0, 0, 100, 100}), (PixelRect{0, 25, 100, 50}));
}

/// The opening of a panel that has the source's shape, as panels round it.
PixelRect openingFor(PixelSize source, double width, double pixelsPerPoint) {
  constexpr double titleBar = 26;
  const double height = width * source.height / source.width + titleBar;
  const auto pixels = [&](double points) {
    return static_cast<int>(std::lround(points * pixelsPerPoint));
  };
  return {0, pixels(titleBar), pixels(width), pixels(height) - pixels(titleBar)};
}

TEST(AspectFit, leavesNoLineBesideAPictureOfThePanelsShape) {
  for (const PixelSize source : {PixelSize{765, 523}, {1201, 401}, {333, 1000}, {640, 640}}) {
    for (const double pixelsPerPoint : {1.0, 1.25, 1.5, 2.0}) {
      for (double width = 160; width < 200; width += 0.25) {
        const PixelRect opening = openingFor(source, width, pixelsPerPoint);
        EXPECT_EQ(aspectFit(source, opening), opening) << width << " at " << pixelsPerPoint;
      }
    }
  }
}

TEST(AspectFit, keepsTheShapeWhereAPersonHasGivenThePanelAnother) {
  EXPECT_EQ(aspectFit({200, 100}, {0, 0, 100, 52}), (PixelRect{0, 1, 100, 50}));
  EXPECT_EQ(aspectFit({100, 200}, {0, 0, 52, 100}), (PixelRect{1, 0, 50, 100}));
}

TEST(AspectFit, leavesAtLeastAPixelOfAnExtremeShape) {
  EXPECT_EQ(aspectFit({10000, 1}, {0, 0, 100, 100}), (PixelRect{0, 49, 100, 1}));
}

TEST(AspectFit, hasNoPlaceWithoutRoomOrPicture) {
  EXPECT_TRUE(isEmpty(aspectFit({10, 10}, {0, 0, 100, 0})));
  EXPECT_TRUE(isEmpty(aspectFit({0, 0}, {0, 0, 100, 100})));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
