#include <gtest/gtest.h>

#include "platform/linux/x11/monitors/FreePlace.h"

namespace vistrel::platform::linux_desktop {
namespace {

constexpr PixelRect wanted{1920, 0, 1280, 960};
constexpr PixelRect primary{0, 0, 1920, 1080};

TEST(FreePlace, IsWhereItIsWantedWhenNothingIsThere) {
  EXPECT_EQ(freePlace(wanted, {}), wanted);
  EXPECT_EQ(freePlace(wanted, {primary}), wanted) << "monitors that touch do not overlap";
  EXPECT_EQ(freePlace(wanted, {primary, {1920, 960, 1280, 1024}}), wanted) << "nor below";
}

TEST(FreePlace, IsToTheRightOfWhatOverlaps) {
  EXPECT_EQ(freePlace(wanted, {primary, {1920, 0, 1280, 1024}}), (PixelRect{3200, 0, 1280, 960}));
  EXPECT_EQ(freePlace(wanted, {primary, {1900, 959, 100, 100}}), (PixelRect{2000, 0, 1280, 960}));
}

TEST(FreePlace, IsToTheRightOfAllThatOverlapOneAfterTheOther) {
  const std::vector<PixelRect> row{{3200, 0, 1280, 1024}, primary, {1920, 0, 1280, 1024}};
  EXPECT_EQ(freePlace(wanted, row), (PixelRect{4480, 0, 1280, 960}));
}

TEST(FreePlace, IsAGapThatIsLargeEnough) {
  const std::vector<PixelRect> gap{primary, {1920, 0, 80, 1024}, {3280, 0, 800, 600}};
  EXPECT_EQ(freePlace(wanted, gap), (PixelRect{2000, 0, 1280, 960}));
  const std::vector<PixelRect> narrower{primary, {1920, 0, 80, 1024}, {3279, 0, 800, 600}};
  EXPECT_EQ(freePlace(wanted, narrower), (PixelRect{4079, 0, 1280, 960}));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
