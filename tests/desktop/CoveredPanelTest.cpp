#include "tests/desktop/DesktopTest.h"

namespace vistrel::testbed {
namespace {

constexpr WindowManager compositingManagers[] = {WindowManager::xfwm4Compositing,
                                                 WindowManager::mutter};

/// A panel that lies in the same place as another one, where a compositing manager shows both.
class CoveredPanel : public DesktopTestWithManager {};

TEST_P(CoveredPanel, ShowsTheNewestPictureOnceItComesToLight) {
  const auto first = openSource({.title = "a", .area = sourceArea, .decorated = false});
  const auto second = openSource({.title = "b", .area = sourceArea, .decorated = false});
  startVistrel();
  const PanelOnScreen lower = mirrorRow(0, 2, 1);
  const PanelOnScreen upper = mirrorRow(1, 2, 2);
  const Rect place = PanelOnScreen::computedArea(sourceArea, firstPanel);
  ASSERT_TRUE(
      becomes(upper, {place.x + cascadeStep, place.y + cascadeStep, place.width, place.height}));
  // Held at the picture, and near enough to snap.
  const Point held = upper.contents().centre();
  pointAt(upper, held);
  input_.drag(held, {held.x - cascadeStep + 3, held.y - cascadeStep - 2});
  ASSERT_TRUE(becomes(upper, place));
  EXPECT_TRUE(
      eventually([&] { return !connection_.numbers(lower.id(), "_VISTREL_COVERED").empty(); }));
  constexpr Quadrants otherColours{yellow, blue, red, green};
  first->show(otherColours);
  const Point now = upper.contents().centre();
  input_.rest(betweenClicks);
  input_.drag(now, {now.x + 400, now.y});
  EXPECT_TRUE(eventually([&] { return lower.shows(otherColours); }));
  EXPECT_TRUE(eventually([&] { return upper.shows(fourColours); }));
}

VISTREL_WITH_MANAGERS(CompositingManagers, CoveredPanel, compositingManagers);

}  // namespace
}  // namespace vistrel::testbed
