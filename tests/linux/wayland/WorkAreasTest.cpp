#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/wayland/kwin/WorkAreas.h"

namespace vistrel::platform::linux_desktop {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const WorkArea bare{rect(0, 0, 1280, 1024), rect(0, 0, 1280, 1024)};
const WorkArea withBar{rect(1280, 0, 1280, 1024), rect(1280, 0, 1280, 984)};

TEST(WorkAreas, AreReadAsAScriptTellsThem) {
  EXPECT_THAT(parseWorkAreas("0 0 1280 1024 0 0 1280 1024\n1280 0 1280 1024 1280 0 1280 984\n"),
              ElementsAre(bare, withBar));
  EXPECT_THAT(parseWorkAreas(""), IsEmpty());
  EXPECT_THAT(parseWorkAreas("0 0 1280 1024 0 0 1280\n"), IsEmpty());
  EXPECT_THAT(parseWorkAreas("0 0 1280 1024 0 0 undefined 1024\n"), IsEmpty());
}

TEST(WorkAreas, AreThoseOfTheMonitorsWhateverTheOrder) {
  EXPECT_THAT(freeAreas({{1280, 0, 1280, 1024}, {0, 0, 1280, 1024}}, {bare, withBar}),
              ElementsAre(PixelRect{1280, 0, 1280, 984}, PixelRect{0, 0, 1280, 1024}));
}

TEST(WorkAreas, AreInXsPixels) {
  EXPECT_THAT(freeAreas({{0, 0, 1920, 1536}, {1920, 0, 1920, 1536}}, {bare, withBar}),
              ElementsAre(PixelRect{0, 0, 1920, 1536}, PixelRect{1920, 0, 1920, 1476}));
  const WorkArea between{rect(0, 0, 853.333, 682.667), rect(40.333, 0, 813, 682.667)};
  EXPECT_THAT(freeAreas({{0, 0, 853, 683}}, {between}), ElementsAre(PixelRect{40, 0, 813, 683}));
}

TEST(WorkAreas, AreWholeWhereNoSuchOutputIsToldOf) {
  EXPECT_THAT(freeAreas({{0, 0, 1280, 1024}}, {}), ElementsAre(PixelRect{0, 0, 1280, 1024}));
  EXPECT_THAT(freeAreas({{0, 0, 1280, 1024}, {1280, 0, 1280, 800}}, {bare, withBar}),
              ElementsAre(PixelRect{0, 0, 1280, 1024}, PixelRect{1280, 0, 1280, 800}));
}

TEST(WorkAreas, AreWholeWhereNothingIsLeft) {
  EXPECT_THAT(freeAreas({{0, 0, 1280, 1024}}, {{bare.output, rect(0, 0, 0, 0)}}),
              ElementsAre(PixelRect{0, 0, 1280, 1024}));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
