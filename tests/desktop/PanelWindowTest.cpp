#include "tests/desktop/DesktopTest.h"

namespace vistrel::testbed {
namespace {

constexpr std::uint32_t everyDesktop = 0xFFFFFFFF;
/// Who asks, in messages to the manager (EWMH, "Source indication in requests").
constexpr std::uint32_t byPerson = 2;

class PanelWindow : public DesktopTest {
 protected:
  auto openFullScreen() {
    auto film = openSource({.title = "Film", .picture = Quadrants::uniform(white)});
    constexpr std::uint32_t add = 1;
    connection_.sendToManager(film->id(), "_NET_WM_STATE",
                              {add, connection_.atom("_NET_WM_STATE_FULLSCREEN"), 0, byPerson});
    EXPECT_TRUE(eventually([&] { return film->area() == Rect{0, 0, 1280, 1024}; }));
    return film;
  }
};

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
  const auto film = openFullScreen();
  EXPECT_TRUE(eventually([&] { return isAbove(connection_, panel.id(), film->id()); }));
  EXPECT_TRUE(eventually([&] { return panel.shows(fourColours); }));
}

TEST_F(PanelWindow, OpensAboveAFullScreenWindow) {
  const auto source = openSource();
  startVistrel();
  input_.clickAt(vistrel_->pickerRows(1).front().centre());
  const auto film = openFullScreen();
  connection_.sendToManager(vistrel_->picker().id(), "_NET_ACTIVE_WINDOW", {byPerson, 0, 0});
  input_.clickAt(vistrel_->picker().mirrorButton());
  const PanelOnScreen panel = vistrel_->panels(1).front();
  connection_.sendToManager(film->id(), "_NET_ACTIVE_WINDOW", {byPerson, 0, 0});
  EXPECT_TRUE(eventually([&] { return isAbove(connection_, panel.id(), film->id()); }));
}

TEST_F(PanelWindow, StaysWhenAFullScreenWindowIsMinimised) {
  const auto source = openSource();
  const PanelOnScreen panel = mirrorOnlySource();
  const auto film = openFullScreen();
  ASSERT_TRUE(eventually([&] { return isAbove(connection_, panel.id(), film->id()); }));
  constexpr std::uint32_t iconicState = 3;
  connection_.sendToManager(film->id(), "WM_CHANGE_STATE", {iconicState});
  ASSERT_TRUE(eventually([&] { return !isViewable(connection_, film->id()); }));
  EXPECT_TRUE(eventually([&] { return panel.isOnScreen() && panel.shows(fourColours); }));
  EXPECT_FALSE(isViewable(connection_, film->id()));
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
