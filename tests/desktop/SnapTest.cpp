#include "tests/desktop/DesktopTest.h"

namespace vistrel::testbed {
namespace {

/// Panels that are dragged near edges.
class Snap : public DesktopTest {
 protected:
  static constexpr int distance = 12;

  Snap() : source_(openSource()) {}

  PanelOnScreen openPanel() {
    const PanelOnScreen panel = mirrorOnlySource();
    EXPECT_TRUE(becomes(panel, PanelOnScreen::computedArea(sourceArea, firstPanel)));
    return panel;
  }
  /// Holds the panel at its picture, so that the drag is no double-click on its title.
  void dragTo(const PanelOnScreen& panel, Point origin) {
    const Rect area = panel.area();
    const Point from = panel.contents().centre();
    input_.rest(betweenClicks);
    input_.drag(from, {from.x + origin.x - area.x, from.y + origin.y - area.y});
  }
  static Rect movedTo(Rect area, Point origin) {
    return {origin.x, origin.y, area.width, area.height};
  }

  std::unique_ptr<TestWindow> source_;
};

TEST_F(Snap, APanelJumpsOntoTheScreensEdgesFromTwelvePointsOff) {
  const PanelOnScreen panel = openPanel();
  const Rect start = panel.area();
  dragTo(panel, {distance, 300});
  EXPECT_TRUE(becomes(panel, movedTo(start, {0, 300})));
  dragTo(panel, {distance + 1, 300});
  EXPECT_TRUE(becomes(panel, movedTo(start, {distance + 1, 300})));
  const PrivateDisplay::Options screen;
  const Point bottomRight{screen.width - start.width, screen.height - start.height};
  dragTo(panel, {bottomRight.x - distance, bottomRight.y + distance});
  EXPECT_TRUE(becomes(panel, movedTo(start, bottomRight)));
}

TEST_F(Snap, APanelGoesWhereItIsDraggedWhileControlIsHeld) {
  const PanelOnScreen panel = openPanel();
  const Rect start = panel.area();
  input_.hold(keyControl);
  dragTo(panel, {5, 7});
  EXPECT_TRUE(becomes(panel, movedTo(start, {5, 7})));
  input_.letGo(keyControl);
  dragTo(panel, {6, 8});
  EXPECT_TRUE(becomes(panel, movedTo(start, {0, 0})));
}

TEST_F(Snap, APanelLiesFlushAgainstAnother) {
  const auto second = openSource({.title = "Second", .area = sourceArea, .decorated = false});
  startVistrel();
  const PanelOnScreen fixed = mirrorRow(0, 2, 1);
  const PanelOnScreen dragged = mirrorRow(1, 2, 2);
  const Rect start = PanelOnScreen::computedArea(
      sourceArea, {firstPanel.x + cascadeStep, firstPanel.y + cascadeStep});
  ASSERT_TRUE(becomes(dragged, start));
  const Rect edge = fixed.area();
  dragTo(dragged, {edge.x + edge.width + 7, edge.y + 50});
  EXPECT_TRUE(becomes(dragged, movedTo(start, {edge.x + edge.width, edge.y + 50})));
  dragTo(dragged, {edge.x - 6, edge.y + edge.height - 8});
  EXPECT_TRUE(becomes(dragged, movedTo(start, {edge.x, edge.y + edge.height})));
}

}  // namespace
}  // namespace vistrel::testbed
