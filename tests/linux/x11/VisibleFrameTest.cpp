#include <gtest/gtest.h>

#include "platform/linux/x11/manager/VisibleFrame.h"

namespace vistrel::platform::linux_desktop {
namespace {

TEST(VisibleFrame, isTheClientAloneWithoutDecoration) {
  EXPECT_EQ(visibleFrame({10, 20, 300, 200}, {}, {}), (PixelRect{10, 20, 300, 200}));
}

TEST(VisibleFrame, includesTheManagersDecoration) {
  EXPECT_EQ(visibleFrame({1, 20, 300, 200}, {1, 1, 20, 4}, {}), (PixelRect{0, 0, 302, 224}));
}

TEST(VisibleFrame, leavesTheClientsOwnShadowOut) {
  EXPECT_EQ(visibleFrame({0, 0, 300, 200}, {}, {26, 26, 23, 29}), (PixelRect{26, 23, 248, 148}));
}

TEST(VisibleFrame, includesAShadowThatTheManagersDecorationSurrounds) {
  EXPECT_EQ(visibleFrame({1, 20, 300, 200}, {1, 1, 20, 4}, {26, 26, 23, 29}),
            (PixelRect{0, 0, 302, 224}));
}

TEST(VisibleFrame, ignoresAShadowThatLeavesNothing) {
  EXPECT_EQ(visibleFrame({0, 0, 30, 20}, {}, {20, 20, 5, 5}), (PixelRect{0, 0, 30, 20}));
}

TEST(FrameExtents, areReadInTheOrderOfTheProperty) {
  EXPECT_EQ(extentsFrom({1, 2, 3, 4}), (Extents{1, 2, 3, 4}));
}

TEST(FrameExtents, areNoneWhenThePropertyIsMalformed) {
  EXPECT_EQ(extentsFrom({}), Extents{});
  EXPECT_EQ(extentsFrom({1, 2, 3}), Extents{});
  EXPECT_EQ(extentsFrom({1, 2, 3, 4, 5}), Extents{});
}

TEST(FrameExtents, areNoneWhenTheyAreAbsurd) {
  EXPECT_EQ(extentsFrom({1000, 1000, 1000, 1000}), (Extents{1000, 1000, 1000, 1000}));
  EXPECT_EQ(extentsFrom({1, 1001, 1, 1}), Extents{});
  EXPECT_EQ(extentsFrom({0xffffffff, 0, 0, 0}), Extents{});
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
