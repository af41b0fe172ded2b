#include <gmock/gmock.h>

#include "platform/linux/x11/server/PixelGeometry.h"

namespace vistrel::platform::linux_desktop {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

TEST(PixelGeometry, intersectsRectangles) {
  EXPECT_EQ(intersection({0, 0, 10, 10}, {5, 6, 10, 10}), (PixelRect{5, 6, 5, 4}));
  EXPECT_TRUE(isEmpty(intersection({0, 0, 10, 10}, {10, 0, 10, 10})));
}

TEST(PixelGeometry, spansBothRectanglesOrTheOneThatIsNotEmpty) {
  EXPECT_EQ(unionOf({0, 0, 1, 1}, {9, 9, 1, 1}), (PixelRect{0, 0, 10, 10}));
  EXPECT_EQ(unionOf({}, {9, 9, 1, 1}), (PixelRect{9, 9, 1, 1}));
}

TEST(PixelGeometry, cutsToWhatTheWireHolds) {
  const auto wire = wireRect({-40000, 40000, 70000, -3});
  EXPECT_EQ(wire.x, -32768);
  EXPECT_EQ(wire.y, 32767);
  EXPECT_EQ(wire.width, 65535);
  EXPECT_EQ(wire.height, 0);
}

TEST(PixelGeometry, mergesRectanglesThatOverlapAlsoThroughOthers) {
  EXPECT_THAT(mergedWhereOverlapping({{0, 0, 5, 5}, {20, 0, 5, 5}}),
              UnorderedElementsAre(PixelRect{0, 0, 5, 5}, PixelRect{20, 0, 5, 5}));
  EXPECT_THAT(mergedWhereOverlapping({{0, 0, 5, 5}, {8, 0, 5, 5}, {4, 0, 5, 5}}),
              ElementsAre(PixelRect{0, 0, 13, 5}));
}

TEST(ChangedRects, dropWhatOthersCoverAndWhatIsEmpty) {
  ChangedRects rects;
  rects.add({2, 2, 2, 2});
  rects.add({0, 0, 10, 10});
  rects.add({1, 1, 1, 1});
  rects.add({5, 5, 0, 9});
  EXPECT_THAT(rects.rects(), ElementsAre(PixelRect{0, 0, 10, 10}));
}

TEST(ChangedRects, becomeOneWhenTheyAreMany) {
  ChangedRects rects;
  for (int i = 0; i < 17; ++i) rects.add({i * 10, 0, 5, 5});
  EXPECT_THAT(rects.rects(), ElementsAre(PixelRect{0, 0, 165, 5}));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
