#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "platform/linux/x11/picture/MipLevels.h"

namespace vistrel::platform::linux_desktop {
namespace {

using Levels = std::vector<MipLevel>;

TEST(MipLevels, areThePictureItselfWhereTheTargetIsHardlySmaller) {
  const Levels whole{{{800, 600}, 1, 1}};
  EXPECT_EQ(levelsFor({800, 600}, {1600, 1200}), whole);
  EXPECT_EQ(levelsFor({800, 600}, {800, 600}), whole);
  EXPECT_EQ(levelsFor({800, 600}, {640, 480}), whole);
}

TEST(MipLevels, areHalvesForAnExactHalf) {
  EXPECT_EQ(levelsFor({800, 600}, {400, 300}), (Levels{{{400, 300}, 2, 2}}));
  EXPECT_EQ(levelsFor({800, 600}, {200, 150}), (Levels{{{400, 300}, 2, 2}, {{200, 150}, 4, 4}}));
  EXPECT_EQ(levelsFor({801, 601}, {400, 300}), (Levels{{{400, 300}, 2, 2}}));
}

TEST(MipLevels, endWithTwiceTheTargetsSizeWhereThatIsBesideAHalf) {
  EXPECT_EQ(levelsFor({800, 600}, {500, 375}),
            (Levels{{{800, 600}, 1, 1}, {{1000, 750}, 0.8, 0.8}}));
  EXPECT_EQ(levelsFor({1000, 500}, {400, 200}), (Levels{{{800, 400}, 1.25, 1.25}}));
  EXPECT_EQ(levelsFor({1000, 500}, {200, 100}),
            (Levels{{{500, 250}, 2, 2}, {{400, 200}, 2.5, 2.5}}));
}

TEST(MipLevels, endWithAHalfThatIsNearlyTwiceAsLargeAsTheTarget) {
  EXPECT_EQ(levelsFor({1900, 1050}, {520, 287}), (Levels{{{950, 525}, 2, 2}}));
  EXPECT_EQ(levelsFor({1000, 500}, {132, 66}), (Levels{{{500, 250}, 2, 2}, {{250, 125}, 4, 4}}));
}

TEST(MipLevels, areBesideAHalfWhereThatWasRounded) {
  EXPECT_EQ(levelsFor({641, 427}, {321, 214}),
            (Levels{{{641, 427}, 1, 1}, {{642, 428}, 641.0 / 642, 427.0 / 428}}));
  EXPECT_EQ(levelsFor({1283, 855}, {321, 214}).front(), (MipLevel{{641, 427}, 2, 2}));
}

TEST(MipLevels, areNeverLargerThanAPixmapCanBe) {
  for (const auto& each : levelsFor({32767, 100}, {24000, 73})) {
    EXPECT_LE(each.size.width, 32767);
  }
}

TEST(MipLevels, leaveNoneSmallerThanTheTargetNorMoreThanTwiceAsLarge) {
  for (int target = 1; target <= 4000; ++target) {
    const auto last = levelsFor({4000, 4000}, {target, target}).back();
    ASSERT_GE(last.size.width, target);
    ASSERT_LE(last.size.width, 2 * target);
    ASSERT_GE(last.size.height, target);
  }
}

TEST(MipLevels, areAtLeastHalfAsLargeAsTheOneBefore) {
  for (int target = 1; target <= 1000; ++target) {
    const auto levels = levelsFor({1000, 600}, {target, std::max(1, target * 6 / 10)});
    for (std::size_t i = 1; i < levels.size(); ++i) {
      ASSERT_LE(levels[i].perPixelX, 2 * levels[i - 1].perPixelX) << target;
    }
  }
}

TEST(MipLevels, areEnlargedFromACopyAlone) {
  for (int target = 1; target <= 1000; ++target) {
    const auto first = levelsFor({1000, 600}, {target, std::max(1, target * 6 / 10)}).front();
    ASSERT_GE(first.perPixelX, 1) << target;
    ASSERT_GE(first.perPixelY, 1) << target;
  }
}

TEST(SampleSpread, isNoneWhereOneSampleTakesEveryPixel) {
  for (const bool isWhole : {true, false}) {
    EXPECT_EQ(sampleSpread(0.5, isWhole), 0);
    EXPECT_EQ(sampleSpread(1, isWhole), 0);
    EXPECT_EQ(sampleSpread(2, isWhole), 0);
  }
}

TEST(SampleSpread, comesInGradually) {
  for (const bool isWhole : {true, false}) {
    double former = 0;
    for (double reduction = 1; reduction < 1.98; reduction += 0.01) {
      const double spread = sampleSpread(reduction, isWhole);
      ASSERT_GE(spread, former) << reduction;
      ASSERT_LE(spread, former + 0.02) << reduction;
      former = spread;
    }
    EXPECT_NEAR(former, 0.2, 0.001);
  }
}

TEST(MipLevels, aloneMissNoPixelUpToAHalf) {
  EXPECT_EQ(finestWholeLevel({100, 100}, {200, 200}), 0);
  EXPECT_EQ(finestWholeLevel({100, 100}, {100, 100}), 0);
  EXPECT_EQ(finestWholeLevel({100, 100}, {50, 50}), 0);
  EXPECT_EQ(finestWholeLevel({100, 100}, {49, 49}), 1);
  EXPECT_EQ(finestWholeLevel({100, 100}, {24, 24}), 2);
}

TEST(MipLevels, endWhereOneSideIsASinglePixel) {
  EXPECT_EQ(levelsFor({1, 1}, {1, 1}), (Levels{{{1, 1}, 1, 1}}));
  EXPECT_EQ(levelsFor({1000, 2}, {10, 1}), (Levels{{{500, 1}, 2, 2}}));
  EXPECT_EQ(levelsFor({3, 1000}, {2, 10}), (Levels{{{3, 1000}, 1, 1}}));
  EXPECT_EQ(halfLevel({5, 1}, 1), (MipLevel{{2, 1}, 2, 2}));
}

TEST(ChangedInCopy, isEveryPixelOfAHalfThatHasAPartInIt) {
  EXPECT_EQ(changedInCopy({3, 4, 2, 1}, 2, 2, {50, 50}), (PixelRect{1, 2, 2, 1}));
  EXPECT_EQ(changedInCopy({99, 99, 2, 2}, 2, 2, {50, 50}), (PixelRect{49, 49, 1, 1}));
  EXPECT_TRUE(isEmpty(changedInCopy({100, 0, 1, 1}, 2, 2, {50, 50})));
}

TEST(ChangedInCopy, isTheSameInAWholeCopy) {
  EXPECT_EQ(changedInCopy({3, 4, 2, 1}, 1, 1, {50, 50}), (PixelRect{3, 4, 2, 1}));
}

/// The pixels that a bilinear filter looks at for the pixel `x` of a copy.
bool looksAt(int x, int pixel, double perPixel) {
  const double center = (x + 0.5) * perPixel - 0.5;
  return std::abs(center - pixel) < 1;
}

TEST(ChangedInCopy, coversEveryPixelThatLooksAtTheChange) {
  for (const double perPixel : {0.8, 1.0, 1.17, 1.25, 1.5, 1.99, 2.0}) {
    for (int changed = 0; changed < 200; ++changed) {
      const auto area = changedInCopy({changed, 0, 1, 1}, perPixel, perPixel, {300, 300});
      for (int x = 0; x < 300; ++x) {
        if (!looksAt(x, changed, perPixel)) continue;
        ASSERT_TRUE(x >= area.x && x < area.x + area.width)
            << perPixel << ", pixel " << changed << " at " << x;
      }
      ASSERT_LE(area.width, 2 + 2 / perPixel) << perPixel << ", pixel " << changed;
    }
  }
}

TEST(ChangedInTarget, keepsASmallChangeSmall) {
  const auto area = changedInTarget({900, 500, 20, 20}, {1900, 1050}, {520, 287}, 6);
  EXPECT_LT(area.width * area.height, 200);
}

TEST(ChangedInTarget, coversEveryPixelWithinReach) {
  std::mt19937 random(11);
  const auto below = [&](int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); };
  for (int round = 0; round < 2000; ++round) {
    const int source = 1 + below(700);
    const int target = 1 + below(400);
    const int changed = below(source);
    const double reach = 1 + below(8);
    const auto area =
        changedInTarget({changed, changed, 1, 1}, {source, source}, {target, target}, reach);
    const double perPixel = static_cast<double>(source) / target;
    for (int x = 0; x < target; ++x) {
      constexpr double touching = 0.001;
      const bool isFar = (x + 1) * perPixel < changed - reach + touching ||
                         x * perPixel > changed + 1 + reach - touching;
      if (isFar) continue;
      ASSERT_TRUE(x >= area.x && x < area.x + area.width)
          << source << " to " << target << ", pixel " << changed << " at " << x;
    }
  }
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
