#include <gtest/gtest.h>

#include "platform/linux/qt/ScreenSpace.h"

namespace vistrel::platform::linux_desktop {
namespace {

const ScreenSpace alone(QRect(0, 0, 1440, 900));
/// With another screen to the left and above.
const ScreenSpace beside(QRect(1920, 180, 1440, 900));

TEST(ScreenSpace, OriginIsTheBottomLeftOfThePrimaryScreen) {
  EXPECT_EQ(alone.fromDesktop(QPointF(0, 900)), (Point{0, 0}));
  EXPECT_EQ(alone.fromDesktop(QPointF(32, 32)), (Point{32, 868}));
  EXPECT_EQ(beside.fromDesktop(QPointF(1920, 1080)), (Point{0, 0}));
  EXPECT_EQ(beside.fromDesktop(QPointF(0, 0)), (Point{-1920, 1080}));
}

TEST(ScreenSpace, RectanglesKeepTheirTopLeftCorner) {
  EXPECT_EQ(alone.fromDesktop(QRect(32, 32, 340, 196)), rect(32, 672, 340, 196));
  EXPECT_EQ(beside.fromDesktop(QRect(1920, 180, 1440, 900)), rect(0, 0, 1440, 900));
}

TEST(ScreenSpace, WholeRectanglesComeBackAsTheyWere) {
  for (const QRect& there : {QRect(32, 32, 340, 196), QRect(-700, -20, 160, 26)}) {
    EXPECT_EQ(alone.toDesktop(alone.fromDesktop(there)), there);
    EXPECT_EQ(beside.toDesktop(beside.fromDesktop(there)), there);
  }
}

TEST(ScreenSpace, SizeDoesNotWobbleWhileAWindowMovesByFractions) {
  for (double x = 0; x < 2; x += 0.1) {
    EXPECT_EQ(alone.toDesktop(rect(x, x, 340.4, 196.6)).size(), QSize(340, 197));
  }
}

TEST(ToPixels, RectanglesThatTouchStillTouch) {
  const PixelRect bar = toPixels(QRectF(0, 0, 343.7, 26), 1.5);
  const PixelRect picture = toPixels(QRectF(0, 26, 343.7, 170.3), 1.5);
  EXPECT_EQ(bar, (PixelRect{0, 0, 516, 39}));
  EXPECT_EQ(picture, (PixelRect{0, 39, 516, 255}));
}

TEST(ToPixels, WholePointsAtScaleOneAreThePixels) {
  EXPECT_EQ(toPixels(QRectF(3, 4, 50, 60), 1), (PixelRect{3, 4, 50, 60}));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
