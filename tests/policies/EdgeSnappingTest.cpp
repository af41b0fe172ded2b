#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

#include "catalogue/EdgeSnapping.h"

namespace vistrel {
namespace {

using platform::rect;
using platform::Rect;

constexpr Rect area{{0, 25}, {1440, 850}};

Rect snappedAlone(const Rect& frame) { return snapped(frame, area, {}); }

TEST(EdgeSnapping, PullsAnEdgeOntoTheBorderWithinTwelvePoints) {
  EXPECT_EQ(snappedAlone(rect(8, 300, 400, 300)).minX(), 0);
  EXPECT_EQ(snappedAlone(rect(12, 300, 400, 300)).minX(), 0);
  EXPECT_EQ(snappedAlone(rect(-12, 300, 400, 300)).minX(), 0);
  EXPECT_EQ(snappedAlone(rect(12.5, 300, 400, 300)).minX(), 12.5);
  EXPECT_EQ(snappedAlone(rect(1030, 300, 400, 300)).maxX(), 1440);
}

TEST(EdgeSnapping, PullsEachAxisByItself) {
  EXPECT_EQ(snappedAlone(rect(5, 30, 400, 300)), rect(0, 25, 400, 300));
  EXPECT_EQ(snappedAlone(rect(5, 570, 400, 300)), rect(0, 575, 400, 300));
  EXPECT_EQ(snappedAlone(rect(500, 30, 400, 300)), rect(500, 25, 400, 300));
}

TEST(EdgeSnapping, PrefersTheNearerLine) {
  EXPECT_EQ(snapped(rect(5, 300, 400, 300), area, {rect(-298, 300, 300, 200)}).minX(), 2);
}

TEST(EdgeSnapping, TouchesAnotherPanelWithoutAGap) {
  EXPECT_EQ(snapped(rect(504, 300, 400, 300), area, {rect(200, 100, 300, 200)}).minX(), 500);
}

TEST(EdgeSnapping, AlignsWithAnotherPanel) {
  const std::vector<Rect> others{rect(200, 100, 300, 200)};
  EXPECT_EQ(snapped(rect(195, 500, 400, 300), area, others).minX(), 200);
  EXPECT_EQ(snapped(rect(109, 500, 400, 300), area, others).maxX(), 500);
  EXPECT_EQ(snapped(rect(700, 105, 400, 300), area, others).minY(), 100);
}

TEST(EdgeSnapping, OfLinesEquallyNearTheAreasCountsBeforeAnotherPanels) {
  EXPECT_EQ(snapped(rect(6, 300, 400, 300), area, {rect(12, 0, 900, 90)}).minX(), 0);
}

TEST(EdgeSnapping, OfLinesEquallyNearTheFirstEdgesCountsBeforeTheSecondEdges) {
  const std::vector<Rect> others{rect(898, 0, 50, 50), rect(510, 0, 50, 50)};
  // The left edge is 4 from 510, the right edge 4 from 898.
  EXPECT_EQ(snapped(rect(506, 300, 396, 300), area, others).minX(), 510);
}

TEST(EdgeSnapping, OfLinesEquallyNearTheMinimumCountsBeforeTheMaximum) {
  EXPECT_EQ(snapped(rect(506, 300, 300, 300), area, {rect(500, 0, 12, 50)}).minX(), 500);
}

TEST(EdgeSnapping, ADistanceThatIsNotANumberNeverCounts) {
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(best(std::array{nan}, std::array{0.0, 1.0}, snapDistance), std::nullopt);
  EXPECT_EQ(best(std::array{3.0}, std::array{nan, 5.0}, snapDistance), 2.0);
  EXPECT_EQ(best(std::array{0.0}, std::array<double, 0>{}, snapDistance), std::nullopt);
}

TEST(EdgeSnapping, KeepsTheSizeAndNeverMovesFurtherThanTheDistance) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> place(-100, 1500);
  std::uniform_real_distribution<double> side(26, 700);
  for (int i = 0; i < 10'000; ++i) {
    const auto any = [&] { return rect(place(random), place(random), side(random), side(random)); };
    const Rect frame = any();
    const Rect result = snapped(frame, area, {any(), any(), any()});
    ASSERT_EQ(result.size, frame.size);
    ASSERT_LE(std::abs(result.minX() - frame.minX()), snapDistance);
    ASSERT_LE(std::abs(result.minY() - frame.minY()), snapDistance);
  }
}

}  // namespace
}  // namespace vistrel
