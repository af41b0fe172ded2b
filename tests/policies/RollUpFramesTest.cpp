#include <gtest/gtest.h>
#include <random>

#include "mirror/RollUpFrames.h"

namespace vistrel {
namespace {

using platform::rect;
using platform::Rect;

TEST(RollUpFrames, RollUpToTheTitleBarUnderTheTopEdge) {
  EXPECT_EQ(rolledUpFrame(rect(100, 500, 340, 196)), rect(100, 670, 340, 26));
}

TEST(RollUpFrames, RollDownToTheFormerHeight) {
  EXPECT_EQ(rolledDownFrame(rect(100, 670, 340, 26), rect(100, 500, 340, 196), 1),
            rect(100, 500, 340, 196));
}

TEST(RollUpFrames, RollDownWhereThePanelIsNowAtItsWidthNow) {
  EXPECT_EQ(rolledDownFrame(rect(7, 300, 500, 26), rect(100, 500, 340, 196), 1),
            rect(7, 130, 500, 196));
}

TEST(RollUpFrames, RollDownByTheAspectWhenNoFormerHeightIsKnown) {
  EXPECT_EQ(rolledDownFrame(rect(100, 670, 340, 26), std::nullopt, 2), rect(100, 500, 340, 196));
}

TEST(RollUpFrames, ReturnWhereTheyCameFrom) {
  std::mt19937 random(13);
  std::uniform_int_distribution<int> coordinate(-3000, 3000);
  std::uniform_int_distribution<int> side(26, 3000);
  for (int round = 0; round < 1000; ++round) {
    const Rect frame = rect(coordinate(random), coordinate(random), side(random), side(random));
    const Rect rolledUp = rolledUpFrame(frame);
    ASSERT_EQ(rolledUp.maxY(), frame.maxY());
    ASSERT_EQ(rolledUp.height(), 26);
    ASSERT_EQ(rolledDownFrame(rolledUp, frame, 1), frame);
  }
}

}  // namespace
}  // namespace vistrel
