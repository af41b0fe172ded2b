#include <cmath>
#include <gtest/gtest.h>
#include <random>

#include "mirror/CaptureSize.h"

namespace vistrel {
namespace {

TEST(InitialCaptureSize, IsTheSourcesOwnAtTheBackingScale) {
  EXPECT_EQ(initialCaptureSize({1000, 600}, 2), (CaptureSize{2000, 1200}));
  EXPECT_EQ(initialCaptureSize({1000, 600}, 1), (CaptureSize{1000, 600}));
}

TEST(InitialCaptureSize, TruncatesAndDoesNotRound) {
  EXPECT_EQ(initialCaptureSize({1000.7, 600.2}, 2), (CaptureSize{2001, 1200}));
}

TEST(InitialCaptureSize, IsAtLeastTwoPixelsEachWay) {
  EXPECT_EQ(initialCaptureSize({0.5, 0.5}, 2), (CaptureSize{2, 2}));
  EXPECT_EQ(initialCaptureSize({0, -30}, 2), (CaptureSize{2, 2}));
}

TEST(InitialCaptureSizeDeathTest, SizeThatFitsNoIntegerEndsTheProgramSilently) {
  for (const platform::Size size :
       {platform::Size{std::nan(""), 1}, {1, HUGE_VAL}, {1e300, 1}, {1, -1e19}}) {
    EXPECT_EXIT(initialCaptureSize(size, 2), testing::KilledBySignal(SIGABRT), "^$");
  }
}

TEST(GrownCaptureSize, StaysUntilThePanelIsMoreThanFifteenPercentWider) {
  const platform::Size source{2000, 1000};
  EXPECT_EQ(grownCaptureSize(1000, 1150, source, 1), std::nullopt);
  EXPECT_EQ(grownCaptureSize(1000, 1151, source, 1), (CaptureSize{1151, 575}));
}

TEST(GrownCaptureSize, TruncatesItsThreshold) {
  // 800 × 1.15 in double precision is just below 920.
  EXPECT_EQ(grownCaptureSize(800, 919, {2000, 1000}, 1), std::nullopt);
  EXPECT_EQ(grownCaptureSize(800, 920, {2000, 1000}, 1), (CaptureSize{920, 460}));
}

TEST(GrownCaptureSize, CountsThePanelInPixels) {
  EXPECT_EQ(grownCaptureSize(1000, 575, {2000, 1000}, 2), std::nullopt);
  EXPECT_EQ(grownCaptureSize(1000, 576, {2000, 1000}, 2), (CaptureSize{1152, 576}));
}

TEST(GrownCaptureSize, ReachesTwiceTheSourcesPixelWidthAtMost) {
  EXPECT_EQ(grownCaptureSize(800, 1000, {400, 300}, 2), (CaptureSize{1600, 1200}));
  EXPECT_EQ(grownCaptureSize(1600, 1000, {400, 300}, 2), std::nullopt);
}

TEST(GrownCaptureSize, KeepsTheSourcesAspectAndNotThePanels) {
  EXPECT_EQ(grownCaptureSize(100, 300, {300, 100}, 1), (CaptureSize{300, 100}));
}

TEST(GrownCaptureSize, MayHaveNoHeight) {
  EXPECT_EQ(grownCaptureSize(100, 300, {3000, 1}, 1), (CaptureSize{300, 0}));
}

TEST(GrownCaptureSize, NeverShrinks) {
  EXPECT_EQ(grownCaptureSize(1000, 160, {400, 300}, 1), std::nullopt);
}

TEST(GrownCaptureSizeDeathTest, WidthThatFitsNoIntegerEndsTheProgramSilently) {
  EXPECT_EXIT(grownCaptureSize(2, std::nan(""), {400, 300}, 2), testing::KilledBySignal(SIGABRT),
              "^$");
  EXPECT_EXIT(grownCaptureSize(2, 1e300, {400, 300}, 2), testing::KilledBySignal(SIGABRT), "^$");
  EXPECT_EXIT(grownCaptureSize(2, 1000, {1e300, 300}, 2), testing::KilledBySignal(SIGABRT), "^$");
}

TEST(GrownCaptureSize, GrowsAboveTheThresholdUpToTheCapForRandomInput) {
  std::mt19937 random(11);
  std::uniform_real_distribution<double> side(1, 4000);
  std::uniform_int_distribution<std::int64_t> pixels(1, 8000);
  const double scales[] = {1, 1.25, 1.5, 2, 3};
  int grown = 0;
  for (int round = 0; round < 20'000; ++round) {
    const platform::Size source{side(random), side(random)};
    const double scale = scales[random() % std::size(scales)];
    const std::int64_t current = pixels(random);
    const double panel = side(random);
    const auto result = grownCaptureSize(current, panel, source, scale);

    const auto wanted = static_cast<std::int64_t>(panel * scale);
    const auto cap = static_cast<std::int64_t>(2 * scale * source.width);
    const bool isWideEnough =
        wanted > static_cast<std::int64_t>(static_cast<double>(current) * 1.15);
    const bool mayGrow = isWideEnough && std::min(wanted, cap) > current;
    ASSERT_EQ(result.has_value(), mayGrow);
    if (!result) continue;
    ++grown;
    EXPECT_EQ(result->width, std::min(wanted, cap));
    EXPECT_NEAR(static_cast<double>(result->height),
                static_cast<double>(result->width) * source.height / source.width, 1);
    EXPECT_EQ(grownCaptureSize(result->width, panel, source, scale), std::nullopt);
  }
  EXPECT_GT(grown, 1000);
}

}  // namespace
}  // namespace vistrel
