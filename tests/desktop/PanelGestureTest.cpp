#include <csignal>

#include "tests/desktop/DesktopTest.h"
#include "tests/support/PointerLook.h"

namespace vistrel::testbed {
namespace {

class PanelGesture : public DesktopTest {
 protected:
  static constexpr int rolledUp = PanelOnScreen::titleBarHeight;

  PanelGesture() : source_(openSource()) {}

  PanelOnScreen openPanel() {
    const PanelOnScreen panel = mirrorOnlySource();
    const Rect computed = PanelOnScreen::computedArea(sourceArea, firstPanel);
    EXPECT_TRUE(eventually([&] { return panel.area() == computed; }));
    return panel;
  }
  // The second press moves before it ends.
  void doubleClickThatMoves(Point from, Point to) {
    input_.inOneGo([&] {
      input_.clickAt(from);
      input_.rest(InputDriver::betweenPresses);
      input_.drag(from, to, 1);
    });
  }

  std::unique_ptr<TestWindow> source_;
};

TEST_F(PanelGesture, DraggingTheCardMovesThePanel) {
  const PanelOnScreen panel = openPanel();
  const Rect start = panel.area();
  const Point from = panel.contents().centre();
  input_.drag(from, {from.x + 301, from.y + 117});
  EXPECT_TRUE(becomes(panel, {start.x + 301, start.y + 117, start.width, start.height}));
}

TEST_F(PanelGesture, ThePanelFollowsThePointerBelowTheThresholdToo) {
  const PanelOnScreen panel = openPanel();
  const Rect start = panel.area();
  const Point from = panel.titleBar();
  input_.moveTo(from);
  input_.beginDrag();
  input_.moveTo({from.x + 1, from.y + 1});
  EXPECT_TRUE(becomes(panel, {start.x + 1, start.y + 1, start.width, start.height}));
  input_.release();
}

TEST_F(PanelGesture, ADoubleClickThatMovesByThreePointsStillRollsUp) {
  const PanelOnScreen panel = openPanel();
  const Rect start = panel.area();
  const Point at = panel.titleBar();
  doubleClickThatMoves(at, {at.x + 2, at.y + 1});
  EXPECT_TRUE(becomes(panel, {start.x + 2, start.y + 1, start.width, rolledUp}));
}

TEST_F(PanelGesture, ADoubleClickThatMovesByFourPointsIsADrag) {
  const PanelOnScreen panel = openPanel();
  const Rect start = panel.area();
  const Point at = panel.titleBar();
  doubleClickThatMoves(at, {at.x + 2, at.y + 2});
  // A later drag ends only after everything before it was handled.
  input_.rest(betweenClicks);
  input_.drag(at, {at.x + 50, at.y + 40});
  EXPECT_TRUE(becomes(panel, {start.x + 52, start.y + 42, start.width, start.height}));
}

TEST_F(PanelGesture, TheGripResizesWithTheTopLeftCornerFixed) {
  const PanelOnScreen panel = openPanel();
  const Rect start = panel.area();
  const Point grip = panel.grip();
  input_.drag(grip, {grip.x + 83, grip.y + 61});
  EXPECT_TRUE(becomes(panel, {start.x, start.y, start.width + 83, start.height + 61}));
  EXPECT_TRUE(eventually([&] { return panel.shows(fourColours); }));
}

TEST_F(PanelGesture, TheGripStopsAtTheSmallestSizeWithTheTopLeftCornerFixed) {
  const PanelOnScreen panel = openPanel();
  input_.drag(panel.grip(), {1, 1}, 20);
  EXPECT_TRUE(becomes(panel, {firstPanel.x, firstPanel.y, 160, 120}));
  EXPECT_TRUE(eventually([&] { return panel.shows(fourColours); }));
}

TEST_F(PanelGesture, ADoubleClickRollsUpAndAnotherRollsDown) {
  const PanelOnScreen panel = openPanel();
  const Rect full = panel.area();
  input_.clickAt(panel.titleBar(), 2);
  EXPECT_TRUE(becomes(panel, {full.x, full.y, full.width, rolledUp}));
  input_.rest(betweenClicks);
  input_.clickAt(panel.titleBar(), 2);
  EXPECT_TRUE(becomes(panel, full));
  EXPECT_TRUE(eventually([&] { return panel.shows(fourColours); }));
}

TEST_F(PanelGesture, RollsByAndByWithItsTopEdgeFixed) {
  const PanelOnScreen panel = openPanel();
  const Rect full = panel.area();
  const Rect rolled{full.x, full.y, full.width, rolledUp};
  const auto isSeenRollingTo = [&](Rect end) {
    int seenBetween = 0;
    input_.clickAt(panel.titleBar(), 2);
    input_.rest(betweenClicks);
    EXPECT_TRUE(eventually([&] {
      const Rect area = panel.area();
      EXPECT_EQ((Rect{area.x, area.y, area.width, rolledUp}), rolled);
      seenBetween += area.height > rolledUp && area.height < full.height ? 1 : 0;
      return area == end;
    }));
    return seenBetween > 2;
  };
  // On a busy machine a roll may be over before it is seen.
  EXPECT_TRUE(eventually([&] {
    const bool isSeenRollingUp = isSeenRollingTo(rolled);
    return isSeenRollingTo(full) && isSeenRollingUp;
  }));
}

TEST_F(PanelGesture, ARollWhoseLastStepsComeLateEndsWhole) {
  constexpr std::uint32_t longerThanARoll = 400;
  const PanelOnScreen panel = openPanel();
  const Rect full = panel.area();
  const auto isHaltedRollingDown = [&] {
    input_.rest(betweenClicks);
    input_.clickAt(panel.titleBar(), 2);
    EXPECT_TRUE(becomes(panel, {full.x, full.y, full.width, rolledUp}));
    input_.rest(betweenClicks);
    input_.clickAt(panel.titleBar(), 2);
    int height = rolledUp;
    EXPECT_TRUE(eventually([&] {
      height = panel.area().height;
      return height > rolledUp;
    }));
    vistrel_->process().sendSignal(SIGSTOP);
    return height < full.height;
  };
  // On a busy machine a roll may be over before it is seen.
  EXPECT_TRUE(eventually([&] {
    const bool isOnTheWay = isHaltedRollingDown();
    input_.rest(longerThanARoll);
    input_.moveTo(panel.titleBar());
    vistrel_->process().sendSignal(SIGCONT);
    EXPECT_TRUE(becomes(panel, full));
    return isOnTheWay;
  }));
}

TEST_F(PanelGesture, ADragWinsOverARollThatIsUnderWay) {
  const PanelOnScreen panel = openPanel();
  const Rect full = panel.area();
  const Point at = panel.titleBar();
  input_.clickAt(at, 2);
  input_.rest(InputDriver::betweenPresses);
  input_.drag(at, {at.x + 40, at.y + 30});
  EXPECT_TRUE(becomes(panel, {full.x + 40, full.y + 30, full.width, rolledUp}));
}

TEST_F(PanelGesture, ADoubleClickOnThePictureRollsUpToo) {
  const PanelOnScreen panel = openPanel();
  input_.clickAt(panel.contents().centre(), 2);
  EXPECT_TRUE(eventually([&] { return panel.area().height == rolledUp; }));
}

TEST_F(PanelGesture, ATripleClickTogglesOnce) {
  const PanelOnScreen panel = openPanel();
  const Rect full = panel.area();
  input_.clickAt(panel.titleBar(), 3);
  // A later drag ends only after everything before it was handled.
  input_.rest(betweenClicks);
  const Point at = {full.x + full.width / 2, full.y + rolledUp / 2};
  input_.drag(at, {at.x + 40, at.y});
  EXPECT_TRUE(becomes(panel, {full.x + 40, full.y, full.width, rolledUp}));
}

TEST_F(PanelGesture, ARolledUpPanelCanBeDraggedAndUnrollsThere) {
  const PanelOnScreen panel = openPanel();
  const Rect full = panel.area();
  input_.clickAt(panel.titleBar(), 2);
  ASSERT_TRUE(becomes(panel, {full.x, full.y, full.width, rolledUp}));
  input_.rest(betweenClicks);
  const Point at = panel.titleBar();
  input_.drag(at, {at.x + 90, at.y + 50});
  ASSERT_TRUE(becomes(panel, {full.x + 90, full.y + 50, full.width, rolledUp}));
  input_.rest(betweenClicks);
  input_.clickAt(panel.titleBar(), 2);
  EXPECT_TRUE(becomes(panel, {full.x + 90, full.y + 50, full.width, full.height}));
}

TEST_F(PanelGesture, TheCloseButtonClosesThisMirrorAlone) {
  const auto other = openSource(
      {.title = "Other", .application = "Zebra", .area = sourceArea, .decorated = false});
  startVistrel();
  const PanelOnScreen first = mirrorRow(0, 2, 1);
  const PanelOnScreen second = mirrorRow(1, 2, 2);
  input_.clickAt(first.closeButton());
  EXPECT_EQ(vistrel_->panels(1).front().id(), second.id());
  EXPECT_FALSE(first.isOnScreen());
  other->show(Quadrants::uniform(blue));
  EXPECT_TRUE(eventually([&] { return second.shows(Quadrants::uniform(blue)); }));
}

TEST_F(PanelGesture, AClosedMirrorOpensAnew) {
  const PanelOnScreen panel = openPanel();
  input_.clickAt(panel.closeButton());
  vistrel_->panels(0);
  const PanelOnScreen again = mirrorRow(0, 1, 1);
  EXPECT_TRUE(becomes(again, PanelOnScreen::computedArea(sourceArea, firstPanel)));
  EXPECT_TRUE(eventually([&] { return again.shows(fourColours); }));
}

TEST_F(PanelGesture, ThePointerChangesOverTheGripAlone) {
  const PanelOnScreen panel = openPanel();
  input_.moveTo(panel.contents().centre());
  const auto elsewhere = pointerLook(connection_);
  input_.moveTo(panel.grip());
  EXPECT_TRUE(eventually([&] { return pointerLook(connection_) != elsewhere; }));
  input_.moveTo(panel.contents().centre());
  EXPECT_TRUE(eventually([&] { return pointerLook(connection_) == elsewhere; }));
}

}  // namespace
}  // namespace vistrel::testbed
