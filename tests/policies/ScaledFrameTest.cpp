#include <gtest/gtest.h>

#include "mirror/ScaledFrame.h"

namespace vistrel {
namespace {

using platform::rect;

TEST(ScaledFrame, ShowsTheSourceAtAFractionOfItsSizeAndKeepsTheTopEdge) {
  EXPECT_EQ(scaledFrame(rect(0, 300, 340, 253), {1200, 800}, 1.5, 0.5, 160),
            rect(0, 127, 600, 426));
  EXPECT_EQ(scaledFrame(rect(10, 20, 100, 100), {1000, 500}, 2, 1, 160), rect(10, -406, 1000, 526));
}

TEST(ScaledFrame, IsNoNarrowerThanThePanelMayBe) {
  EXPECT_EQ(scaledFrame(rect(0, 0, 340, 200), {400, 400}, 1, 0.25, 160), rect(0, 14, 160, 186));
}

TEST(ScaledFrame, MayReachPastEveryScreen) {
  EXPECT_EQ(scaledFrame(rect(0, 0, 160, 120), {30'000, 20}, 1500, 1, 160).size,
            (platform::Size{30'000, 46}));
}

}  // namespace
}  // namespace vistrel
