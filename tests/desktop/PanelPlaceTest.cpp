#include "tests/desktop/DesktopTest.h"
#include "tests/desktop/TestedHere.h"

namespace vistrel::testbed {
namespace {

/// Where a panel is under each manager, to the pixel. What the program takes for the panel's place
/// shows in the next gesture, which begins there.
class PanelPlace : public DesktopTestWithManager {
 protected:
  PanelPlace() : source_(openSource()) {}

  void dragBy(const PanelOnScreen& panel, Point by) {
    const Point from = panel.titleBar();
    input_.drag(from, {from.x + by.x, from.y + by.y});
  }
  void resizeBy(const PanelOnScreen& panel, Point by) {
    const Point from = panel.grip();
    pointAt(panel, from);
    input_.drag(from, {from.x + by.x, from.y + by.y}, 20);
  }
  void doubleClick(const PanelOnScreen& panel) {
    input_.rest(betweenClicks);
    input_.clickAt(panel.titleBar(), 2);
  }
  std::unique_ptr<TestWindow> source_;
};

TEST_P(PanelPlace, GesturesEndWhereThePointerDoes) {
  const PanelOnScreen panel = mirrorOnlySource();
  const Rect opened = PanelOnScreen::computedArea(sourceArea, firstPanel);
  ASSERT_TRUE(becomes(panel, opened));
  // Above the picker, which some managers let cover it.
  dragBy(panel, {301, 7});
  Rect area{opened.x + 301, opened.y + 7, opened.width, opened.height};
  ASSERT_TRUE(becomes(panel, area));
  resizeBy(panel, {83, 31});
  area = {area.x, area.y, area.width + 83, area.height + 31};
  ASSERT_TRUE(becomes(panel, area));
  resizeBy(panel, {-500, 20});
  area = {area.x, area.y, 160, area.height + 20};
  ASSERT_TRUE(becomes(panel, area)) << "the smallest width";
  resizeBy(panel, {200, -400});
  area = {area.x, area.y, 360, 120};
  ASSERT_TRUE(becomes(panel, area)) << "the smallest height";
  doubleClick(panel);
  ASSERT_TRUE(becomes(panel, {area.x, area.y, area.width, rolledUpHeight()}));
  doubleClick(panel);
  EXPECT_TRUE(becomes(panel, area));
  EXPECT_TRUE(eventually([&] { return panel.dot() == Dot::live || panel.dot() == Dot::stale; }));
}

VISTREL_WITH_MANAGERS(WindowManagers, PanelPlace, managersTestedHere());

class StoppedPanelPlace : public PanelPlace {};

// Most managers let a panel go off the screen; one keeps windows without a frame on it.
TEST_P(StoppedPanelPlace, IsWhereTheProgramTakesThePanelToBe) {
  const PanelOnScreen panel = mirrorOnlySource();
  const Rect opened = PanelOnScreen::computedArea(sourceArea, firstPanel);
  ASSERT_TRUE(becomes(panel, opened));
  dragBy(panel, {-132, -45});
  const Point stop = GetParam() == WindowManager::mutter ? Point{0, 0} : Point{-100, -13};
  ASSERT_TRUE(becomes(panel, {stop.x, stop.y, opened.width, opened.height}));
  // Longer than the program waits for a manager's last word.
  input_.rest(2500);
  dragBy(panel, {150, 60});
  EXPECT_TRUE(becomes(panel, {stop.x + 150, stop.y + 60, opened.width, opened.height}));
}

VISTREL_WITH_EACH_MANAGER(StoppedPanelPlace);

class FreshPanelPlace : public PanelPlace {};

TEST_P(FreshPanelPlace, IsWhereTheFirstDragBegins) {
  const PanelOnScreen panel = mirrorOnlySource();
  const Rect opened = PanelOnScreen::computedArea(sourceArea, firstPanel);
  ASSERT_TRUE(becomes(panel, opened));
  activate(source_->id());
  // Longer than the program waits for a manager's last word.
  input_.rest(2500);
  dragBy(panel, {301, 117});
  EXPECT_TRUE(becomes(panel, {opened.x + 301, opened.y + 117, opened.width, opened.height}));
}

VISTREL_WITH_FURTHER_MANAGERS(FreshPanelPlace);

}  // namespace
}  // namespace vistrel::testbed
