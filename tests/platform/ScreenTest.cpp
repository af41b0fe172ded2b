#include <gtest/gtest.h>

#include "platform/Screen.h"

namespace vistrel::platform {
namespace {

Screen screenAt(const Rect& frame) { return {.frame = frame, .visibleFrame = frame}; }

const std::vector<Screen> sideBySide = {screenAt(rect(0, 0, 100, 100)),
                                        screenAt(rect(100, 0, 100, 100))};

TEST(ScreenShowing, IsTheOneThatShowsMost) {
  EXPECT_EQ(screenShowing(rect(80, 0, 50, 10), sideBySide), sideBySide[1]);
  EXPECT_EQ(screenShowing(rect(60, 0, 50, 10), sideBySide), sideBySide[0]);
}

TEST(ScreenShowing, IsTheFirstOfThoseThatShowAsMuch) {
  EXPECT_EQ(screenShowing(rect(75, 0, 50, 10), sideBySide), sideBySide[0]);
}

TEST(ScreenShowing, IsNoneWhereNothingIsShown) {
  EXPECT_EQ(screenShowing(rect(500, 0, 50, 10), sideBySide), std::nullopt);
  EXPECT_EQ(screenShowing(rect(0, 0, 50, 10), {}), std::nullopt);
}

}  // namespace
}  // namespace vistrel::platform
