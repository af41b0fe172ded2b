#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vector>

#include "platform/linux/wayland/stream/TileDifferences.h"

namespace vistrel::platform::linux_desktop {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

/// A picture of one colour with some pixels of another.
class Pixels {
 public:
  explicit Pixels(PixelSize size, int gap = 0)
      : stride_(size.width + gap),
        pixels_(static_cast<std::size_t>(stride_ * size.height), 0xff336699) {}

  Pixels& change(int x, int y) {
    pixels_.at(static_cast<std::size_t>(y * stride_ + x)) ^= 1;
    return *this;
  }
  PixelRows rows() const {
    return {reinterpret_cast<const std::uint8_t*>(pixels_.data()), stride_ * 4};
  }

 private:
  int stride_;
  std::vector<std::uint32_t> pixels_;
};

constexpr PixelSize size{200, 150};

std::vector<PixelRect> changedBy(const Pixels& newer) {
  return differingTiles(Pixels(size).rows(), newer.rows(), size);
}

TEST(TileDifferences, AreNoneBetweenPicturesThatAreAlike) {
  EXPECT_THAT(changedBy(Pixels(size)), IsEmpty());
}

TEST(TileDifferences, AreTheTilesThatOnePixelIsIn) {
  EXPECT_THAT(changedBy(Pixels(size).change(0, 0)), ElementsAre(PixelRect{0, 0, 64, 64}));
  EXPECT_THAT(changedBy(Pixels(size).change(63, 63)), ElementsAre(PixelRect{0, 0, 64, 64}));
  EXPECT_THAT(changedBy(Pixels(size).change(64, 63)), ElementsAre(PixelRect{64, 0, 64, 64}));
  EXPECT_THAT(changedBy(Pixels(size).change(70, 64)), ElementsAre(PixelRect{64, 64, 64, 64}));
}

TEST(TileDifferences, AreCutToThePictureAtItsEnds) {
  EXPECT_THAT(changedBy(Pixels(size).change(199, 149)), ElementsAre(PixelRect{192, 128, 8, 22}));
}

TEST(TileDifferences, AreOneRectangleWhereTheyLieSideBySide) {
  EXPECT_THAT(changedBy(Pixels(size).change(10, 10).change(70, 20)),
              ElementsAre(PixelRect{0, 0, 128, 64}));
  EXPECT_THAT(changedBy(Pixels(size).change(10, 10).change(10, 70)),
              ElementsAre(PixelRect{0, 0, 64, 128}));
}

TEST(TileDifferences, StayApartWhereTheyAreNoRectangle) {
  EXPECT_THAT(changedBy(Pixels(size).change(10, 10).change(150, 10).change(70, 70)),
              UnorderedElementsAre(PixelRect{0, 0, 64, 64}, PixelRect{128, 0, 64, 64},
                                   PixelRect{64, 64, 64, 64}));
}

TEST(TileDifferences, AreThePictureWhereEverythingDiffers) {
  Pixels newer(size);
  for (int y = 0; y < size.height; y += 10) {
    for (int x = 0; x < size.width; x += 7) newer.change(x, y);
  }
  EXPECT_THAT(changedBy(newer), ElementsAre(rectOf(size)));
}

TEST(TileDifferences, TakeNoNoticeOfWhatLiesBetweenRows) {
  const Pixels former(size, 9);
  Pixels newer(size, 9);
  newer.change(200, 3).change(208, 80);
  EXPECT_THAT(differingTiles(former.rows(), newer.rows(), size), IsEmpty());
  EXPECT_THAT(differingTiles(Pixels(size).rows(), newer.rows(), size), IsEmpty());
}

TEST(TileDifferences, AreThePixelOfAPictureOfOne) {
  const PixelSize one{1, 1};
  EXPECT_THAT(differingTiles(Pixels(one).rows(), Pixels(one).change(0, 0).rows(), one),
              ElementsAre(PixelRect{0, 0, 1, 1}));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
