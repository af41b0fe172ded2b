#include <gtest/gtest.h>

#include "platform/linux/qt/space/QtSpace.h"

namespace vistrel::platform::linux_desktop {
namespace {

const QtScreen plain{QPoint(0, 0), QSize(1200, 1000), 1};
const QtScreen fine{QPoint(1200, 100), QSize(600, 500), 2};
const QtScreen between{QPoint(2400, 0), QSize(911, 512), 1.5};
const std::vector<QtScreen> desk{plain, fine, between};

TEST(QtScreen, CountsPixelsFromItsFirst) {
  EXPECT_EQ(plain.pixels(), (PixelRect{0, 0, 1200, 1000}));
  EXPECT_EQ(fine.pixels(), (PixelRect{1200, 100, 1200, 1000}));
  EXPECT_EQ(fine.toPixels(QPointF(1210, 110.5)), (Point{1220, 121}));
}

TEST(QtScreen, AnEvenNumberOfPixelsSurvivesTheToolkitsRounding) {
  EXPECT_EQ(between.pixels(), (PixelRect{2400, 0, 1366, 768}));
}

TEST(QtScreen, GeometryComesBackAsItWas) {
  for (const QtScreen& screen : desk) {
    for (int x = 0; x < 7; ++x) {
      const QRect geometry(screen.first.x() + x, screen.first.y() - x, 340 + x, 199 + x);
      EXPECT_EQ(screen.fromPixels(screen.toPixels(geometry)), geometry);
    }
  }
}

TEST(QtScreen, AWindowIsOnTheScreenWithItsMiddle) {
  const auto firstOf = [](const PixelRect& pixels) {
    return qtScreenOf(pixels, plain, desk).first;
  };
  EXPECT_EQ(firstOf({900, 200, 500, 300}), plain.first);
  EXPECT_EQ(firstOf({1000, 200, 500, 300}), fine.first);
  EXPECT_EQ(firstOf({2390, 0, 500, 300}), between.first);
}

TEST(QtScreen, AWindowWithItsMiddleOffAllScreensIsOnTheLastThatShowsSomeOfIt) {
  EXPECT_EQ(qtScreenOf({1000, 900, 500, 600}, plain, desk).first, fine.first);
}

TEST(QtScreen, AWindowThatNoScreenShowsStaysOnItsOwn) {
  EXPECT_EQ(qtScreenOf({-900, 0, 500, 300}, fine, desk).first, fine.first);
}

TEST(PixelOf, APointIsOnTheScreenThatHasIt) {
  EXPECT_EQ(pixelOf({100, 200}, fine, desk), (Point{100, 200}));
  EXPECT_EQ(pixelOf({1300, 200}, plain, desk), (Point{1400, 300}));
  EXPECT_EQ(pixelOf({1200, 200}, plain, desk), (Point{1200, 300})) << "its very first column";
}

TEST(PixelOf, APointOfNoScreenGoesOnFromTheCurrentOne) {
  EXPECT_EQ(pixelOf({1900, 200}, fine, desk), (Point{2600, 300}));
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
