#include <gtest/gtest.h>

#include "platform/linux/x11/picture/Corners.h"

namespace vistrel::platform::linux_desktop {
namespace {

TEST(Corners, areClearOutsideAndFullInside) {
  const auto disc = discCoverage(10, 20);
  EXPECT_EQ(disc[0], 0);
  EXPECT_EQ(disc[10 * 20 + 10], 255);
  EXPECT_GT(disc[10 * 20], 240) << "the disc touches the middle of each side";
}

TEST(Corners, areSmoothBetween) {
  const auto disc = discCoverage(10, 20);
  int partly = 0;
  for (const auto each : disc) partly += each > 0 && each < 255;
  EXPECT_GT(partly, 40);
}

TEST(Corners, areTheSameOnAllFourSides) {
  const int side = 14;
  const auto disc = discCoverage(side / 2, 16);
  const auto at = [&](int x, int y) { return disc[static_cast<std::size_t>(y * 16 + x)]; };
  for (int y = 0; y < side; ++y) {
    for (int x = 0; x < side; ++x) {
      EXPECT_EQ(at(x, y), at(side - 1 - x, y));
      EXPECT_EQ(at(x, y), at(y, x));
    }
  }
}

TEST(RoundedRows, coverAllButTheCorners) {
  const auto rows = roundedRows({100, 50}, 10, CrossedPixels::mostlyInside);
  int y = 0;
  for (const auto& row : rows) {
    EXPECT_EQ(row.y, y);
    EXPECT_EQ(row.x * 2 + row.width, 100);
    y += row.height;
  }
  EXPECT_EQ(y, 50);
  EXPECT_GT(rows.front().x, 0);
  EXPECT_EQ(rows.front().x, rows.back().x);
}

TEST(RoundedRows, areOneRectangleWithoutARadius) {
  EXPECT_EQ(roundedRows({100, 50}, 0, CrossedPixels::all),
            (std::vector<PixelRect>{{0, 0, 100, 50}}));
}

TEST(RoundedRows, holdWhatADiscCoversAtAllOrForTheMostPart) {
  constexpr int radius = 10;
  const auto disc = discCoverage(radius, 2 * radius);
  for (const auto crossed : {CrossedPixels::mostlyInside, CrossedPixels::all}) {
    const int least = crossed == CrossedPixels::all ? 1 : 128;
    const auto rows = roundedRows({2 * radius, 2 * radius}, radius, crossed);
    for (int y = 0; y < radius; ++y) {
      for (int x = 0; x < radius; ++x) {
        const int covered = disc[static_cast<std::size_t>(y * 2 * radius + x)];
        EXPECT_EQ(x >= rows[static_cast<std::size_t>(y)].x, covered >= least) << x << ", " << y;
      }
    }
  }
}

TEST(RoundedRows, meetInTheMiddleAtTheLargestRadius) {
  for (const auto& row : roundedRows({8, 4}, 2, CrossedPixels::mostlyInside)) {
    EXPECT_GE(row.width, 1);
    EXPECT_GE(row.x, 0);
  }
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
