#include "tests/desktop/DesktopTest.h"
#include "tests/support/Monitors.h"

namespace vistrel::testbed {
namespace {

/// Panels that are dragged near edges.
class Snap : public DesktopTest {
 protected:
  static constexpr int distance = 12;

  Snap() : Snap(PrivateDisplay::Options{}) {}
  explicit Snap(const PrivateDisplay::Options& options)
      : DesktopTest(options), source_(openSource()) {}

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

/// A large monitor, one below it, and one to the left that is lower and does not quite touch it.
class SnapOnThreeMonitors : public Snap {
 protected:
  static constexpr Rect left{0, 200, 700, 600};
  static constexpr Rect large{800, 0, 1200, 800};
  static constexpr Rect below{800, 800, 1000, 700};

  SnapOnThreeMonitors() : Snap({.width = 2000, .height = 1500}) {
    monitors_.setPrimary("large", large);
    monitors_.set("below", below);
    monitors_.set("left", left);
  }

  Monitors monitors_{connection_};
};

TEST_F(SnapOnThreeMonitors, APanelGoesByTheEdgesOfTheMonitorThatItIsOn) {
  const PanelOnScreen panel = mirrorOnlySource();
  const Rect start =
      PanelOnScreen::computedArea(sourceArea, {large.x + firstPanel.x, large.y + firstPanel.y});
  ASSERT_TRUE(becomes(panel, start));
  struct Drag {
    Point to;
    Point end;
  };
  const int right = below.x + below.width - start.width;
  const int bottom = below.y + below.height - start.height;
  for (const auto& [to, end] : {
           Drag{{807, 300}, {800, 300}},  // the large one's left edge
           Drag{{1000, 800 - start.height - 7}, {1000, 800 - start.height}},  // its bottom
           Drag{{1000, 1000}, {1000, 1000}}, Drag{{1000, 807}, {1000, 800}},  // the lower one's top
           Drag{{right + 7, bottom - 9}, {right, bottom}},  // its bottom right corner
           Drag{{100, 400}, {100, 400}},
           Drag{{700 - start.width + 6, 300}, {700 - start.width, 300}},  // the left one's right
           Drag{{300, 207}, {300, 200}},                                  // its top
           Drag{{650, 400}, {650, 400}},                                  // across the gap
       }) {
    dragTo(panel, to);
    EXPECT_TRUE(becomes(panel, movedTo(start, end)));
  }
}

TEST_F(SnapOnThreeMonitors, PanelsOpenOnThePrimaryOneAndComeBackFromThoseThatGo) {
  const auto second = openSource({.title = "Second", .area = sourceArea, .decorated = false});
  startVistrel();
  const PanelOnScreen rolledUp = mirrorRow(0, 2, 1);
  const Rect start =
      PanelOnScreen::computedArea(sourceArea, {large.x + firstPanel.x, large.y + firstPanel.y});
  ASSERT_TRUE(becomes(rolledUp, start));
  dragTo(rolledUp, {1000, 1200});
  ASSERT_TRUE(becomes(rolledUp, movedTo(start, {1000, 1200})));
  input_.rest(betweenClicks);
  input_.clickAt(rolledUp.titleBar(), 2);
  const Rect bar{1000, 1200, start.width, PanelOnScreen::titleBarHeight};
  ASSERT_TRUE(becomes(rolledUp, bar));

  const PickerOnScreen picker = vistrel_->picker();
  moveByManager(picker.id(), {100, 300});
  ASSERT_TRUE(eventually([&] { return picker.area().x == 100; })) << picker.area();
  const PanelOnScreen onLeft = mirrorRow(1, 2, 2);
  EXPECT_TRUE(becomes(onLeft, movedTo(start, {start.x + cascadeStep, start.y + cascadeStep})));
  dragTo(onLeft, {100, 550});
  EXPECT_TRUE(becomes(onLeft, movedTo(start, {100, 550})));

  monitors_.remove("below");
  EXPECT_TRUE(becomes(rolledUp, movedTo(bar, {1000, large.height - bar.height})));
  const Rect pickerOnLeft = picker.area();
  monitors_.remove("left");
  EXPECT_TRUE(becomes(onLeft, movedTo(start, {large.x, 550})));
  EXPECT_TRUE(eventually([&] { return picker.area().x >= large.x; })) << picker.area();
  EXPECT_EQ(picker.area().width, pickerOnLeft.width);

  // The primary one is another one now, and smaller.
  monitors_.setPrimary("other", {800, 0, 1000, 700});
  EXPECT_TRUE(becomes(rolledUp, movedTo(bar, {1000, 700 - bar.height})));
  dragTo(onLeft, {1000, 7});
  EXPECT_TRUE(becomes(onLeft, movedTo(start, {1000, 0})));
}

}  // namespace
}  // namespace vistrel::testbed
