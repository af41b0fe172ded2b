#include "tests/desktop/DesktopTest.h"

namespace vistrel::testbed {
namespace {

constexpr std::uint32_t everyDesktop = 0xFFFFFFFF;

class PanelWindow : public DesktopTest {};

// A manager takes the states that it does not know off again, such as "sticky", which being on
// every desktop then stands for.
TEST_F(PanelWindow, FloatsOnEveryDesktopAndStaysOutOfTheTaskbar) {
  const auto source = openSource();
  const PanelOnScreen panel = mirrorOnlySource();
  for (const char* state :
       {"_NET_WM_STATE_ABOVE", "_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER"}) {
    EXPECT_TRUE(eventually([&] { return hasState(connection_, panel.id(), state); })) << state;
  }
  EXPECT_EQ(connection_.numbers(panel.id(), "_NET_WM_DESKTOP"), std::vector{everyDesktop});
}

TEST_F(PanelWindow, HasNoFrameOfTheManager) {
  const auto source = openSource();
  const PanelOnScreen panel = mirrorOnlySource();
  const auto frame = areaOf(connection_, topLevelOf(connection_, panel.id()));
  EXPECT_EQ(frame, panel.area());
}

TEST_F(PanelWindow, StaysWhenThePersonGoesToAnotherDesktop) {
  const auto source = openSource();
  const PanelOnScreen panel = mirrorOnlySource();
  connection_.sendToManager(connection_.root(), "_NET_CURRENT_DESKTOP", {1, 0});
  ASSERT_TRUE(eventually([&] { return !isViewable(connection_, source->id()); }));
  EXPECT_TRUE(panel.isOnScreen());
  EXPECT_FALSE(vistrel_->panels().empty());
}

TEST_F(PanelWindow, LiesAboveAFullScreenWindow) {
  const auto source = openSource();
  const PanelOnScreen panel = mirrorOnlySource();
  const auto film = openSource({.title = "Film", .picture = Quadrants::uniform(white)});
  constexpr std::uint32_t add = 1;
  constexpr std::uint32_t byPerson = 2;
  connection_.sendToManager(film->id(), "_NET_WM_STATE",
                            {add, connection_.atom("_NET_WM_STATE_FULLSCREEN"), 0, byPerson});
  ASSERT_TRUE(eventually([&] { return film->area() == Rect{0, 0, 1280, 1024}; }));
  EXPECT_TRUE(eventually([&] { return isAbove(connection_, panel.id(), film->id()); }));
  EXPECT_TRUE(eventually([&] { return panel.shows(fourColours); }));
}

TEST_F(PanelWindow, NeverTakesTheFocus) {
  const auto source = openSource();
  const PanelOnScreen panel = mirrorOnlySource();
  const xcb_window_t picker = vistrel_->picker().id();
  EXPECT_TRUE(eventually([&] { return activeWindow() == picker; }));
  const Rect start = panel.area();
  input_.clickAt(panel.contents().centre());
  input_.rest(betweenClicks);
  const Point from = panel.titleBar();
  input_.drag(from, {from.x + 30, from.y + 30});
  ASSERT_TRUE(eventually([&] { return panel.area().x == start.x + 30; }));
  EXPECT_EQ(activeWindow(), picker);
  EXPECT_NE(focusedWindow(connection_), panel.id());
}

TEST_F(PanelWindow, OpeningOneLeavesTheFocusWhereItIs) {
  const auto source = openSource();
  startVistrel();
  const xcb_window_t picker = vistrel_->picker().id();
  ASSERT_TRUE(eventually([&] { return activeWindow() == picker; }));
  mirrorRow(0, 1, 1);
  EXPECT_EQ(activeWindow(), picker);
}

}  // namespace
}  // namespace vistrel::testbed
