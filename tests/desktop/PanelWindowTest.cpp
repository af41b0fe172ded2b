#include <algorithm>
#include <initializer_list>
#include <memory>
#include <vector>

#include "tests/desktop/DesktopTest.h"
#include "tests/desktop/TestedHere.h"

namespace vistrel::testbed {
namespace {

std::vector<WindowManager> managersTestedHereBut(std::initializer_list<WindowManager> others) {
  auto managers = managersTestedHere();
  std::erase_if(managers, [&](auto each) { return std::ranges::count(others, each) > 0; });
  return managers;
}

constexpr std::uint32_t everyDesktop = 0xFFFFFFFF;
constexpr Quadrants otherColours{yellow, blue, red, green};

/// A panel among the other windows of a session.
class PanelWindow : public DesktopTestWithManager {
 protected:
  enum Change : std::uint32_t { leave, enter };

  PanelWindow() : source_(openSource()) {}

  void changeFullScreen(TestWindow& window, Change change) {
    connection_.sendToManager(window.id(), "_NET_WM_STATE",
                              {change, connection_.atom("_NET_WM_STATE_FULLSCREEN"), 0, byPerson});
    EXPECT_TRUE(
        eventually([&] { return (window.area() == wholeScreen) == (change == Change::enter); }));
  }
  std::unique_ptr<TestWindow> openFullScreen() {
    auto film = openSource({.title = "Film", .picture = Quadrants::uniform(white)});
    changeFullScreen(*film, enter);
    return film;
  }
  /// Whether the manager has it float: above others, on every desktop, out of taskbar and pager.
  ::testing::AssertionResult floats(const PanelOnScreen& panel) {
    std::vector<const char*> states{"_NET_WM_STATE_ABOVE", "_NET_WM_STATE_SKIP_TASKBAR"};
    // awesome 4.3 knows of no pagers.
    if (GetParam() != WindowManager::awesome) states.push_back("_NET_WM_STATE_SKIP_PAGER");
    for (const char* state : states) {
      if (!eventually([&] { return hasState(connection_, panel.id(), state); })) {
        return ::testing::AssertionFailure() << "it lacks " << state;
      }
    }
    // Managers take the state that they do not know of the two off again.
    if (!eventually([&] {
          return hasState(connection_, panel.id(), "_NET_WM_STATE_STICKY") ||
                 connection_.numbers(panel.id(), "_NET_WM_DESKTOP") == std::vector{everyDesktop};
        })) {
      return ::testing::AssertionFailure() << "it is on one desktop";
    }
    if (!eventually([&] {
          return !hasState(connection_, panel.id(), "_NET_WM_STATE_DEMANDS_ATTENTION");
        })) {
      return ::testing::AssertionFailure() << "it demands attention";
    }
    return ::testing::AssertionSuccess();
  }
  /// Whether a person sees all of the panel, with the source's picture, above `window`.
  ::testing::AssertionResult isSeenAbove(const PanelOnScreen& panel, const TestWindow& window,
                                         const Quadrants& picture = fourColours) {
    if (!eventually([&] { return isAbove(connection_, panel.id(), window.id()); })) {
      return ::testing::AssertionFailure() << "the panel lies below";
    }
    if (!eventually([&] { return panel.shows(picture); })) {
      return ::testing::AssertionFailure() << "the panel shows something else";
    }
    return ::testing::AssertionSuccess();
  }
  /// A window has the keyboard: it is the active one, and keys that a person types arrive there.
  ::testing::AssertionResult hasKeyboard(TestWindow& window) {
    if (isI3()) {  // 4.22 gives it to whatever is clicked
      awaitManager(connection_);
      EXPECT_TRUE(eventually([&] { return activeWindow() == window.id(); }));
    }
    const int before = window.typedKeys();
    input_.type(keyDown);
    if (!eventually([&] { return window.typedKeys() == before + 1; })) {
      return ::testing::AssertionFailure() << "a key went elsewhere";
    }
    if (!eventually([&] { return activeWindow() == window.id(); })) {
      return ::testing::AssertionFailure() << "it is not active";
    }
    return ::testing::AssertionSuccess();
  }

  static bool isI3() { return GetParam() == WindowManager::i3; }

  static constexpr Rect wholeScreen{0, 0, 1280, 1024};
  std::unique_ptr<TestWindow> source_;
};

// Such a window is beyond any manager; the panel does not fight for its place, and has it again
// when the window goes.
TEST_P(PanelWindow, YieldsToAFullScreenWindowThatIsNotManaged) {
  const PanelOnScreen panel = mirrorOnlySource();
  ASSERT_TRUE(eventually([&] { return panel.shows(fourColours); }));
  const auto saver =
      openSource({.area = wholeScreen, .picture = Quadrants::uniform(white), .managed = false});
  EXPECT_TRUE(eventually([&] { return panel.shows(Quadrants::uniform(white)); }));
  source_->show(otherColours);
  EXPECT_TRUE(isAbove(connection_, saver->id(), panel.id()));
  saver->destroy();
  EXPECT_TRUE(eventually([&] { return panel.shows(otherColours); }));
}

TEST_P(PanelWindow, NeverTakesTheKeyboard) {
  startVistrel();
  const xcb_window_t picker = vistrel_->picker().id();
  ASSERT_TRUE(eventually([&] { return activeWindow() == picker; }));
  const PanelOnScreen panel = mirrorRow(0, 1, 1);
  EXPECT_EQ(activeWindow(), picker) << "opened";
  activate(source_->id());
  EXPECT_TRUE(hasKeyboard(*source_));

  ASSERT_TRUE(eventually([&] { return panel.shows(fourColours); }));
  const Rect start = PanelOnScreen::computedArea(sourceArea, firstPanel);
  ASSERT_TRUE(becomes(panel, start));
  input_.clickAt(panel.contents().centre());
  EXPECT_TRUE(hasKeyboard(*source_)) << "clicked";
  input_.rest(betweenClicks);
  const Point from = panel.titleBar();
  input_.drag(from, {from.x + 30, from.y + 30});
  ASSERT_TRUE(becomes(panel, {start.x + 30, start.y + 30, start.width, start.height}));
  EXPECT_TRUE(hasKeyboard(*source_)) << "dragged";
  const Point grip = panel.grip();
  pointAt(panel, grip);
  input_.drag(grip, {grip.x + 40, grip.y + 20});
  ASSERT_TRUE(eventually([&] { return panel.area().width == start.width + 40; }));
  EXPECT_TRUE(hasKeyboard(*source_)) << "resized";
  for (const bool rolledUp : {true, false}) {
    input_.rest(betweenClicks);
    input_.clickAt(panel.titleBar(), 2);
    ASSERT_TRUE(eventually([&] { return (panel.area().height == rolledUpHeight()) == rolledUp; }));
    EXPECT_TRUE(hasKeyboard(*source_)) << "rolled up: " << rolledUp;
  }
  input_.clickAt(panel.closeButton());
  vistrel_->panels(0);
  EXPECT_TRUE(hasKeyboard(*source_)) << "closed";
}

VISTREL_WITH_MANAGERS(WindowManagers, PanelWindow, managersTestedHere());

class PanelOnEveryDesktop : public PanelWindow {};

TEST_P(PanelOnEveryDesktop, FloatsOnEveryDesktopAndStaysOutOfTheTaskbar) {
  const PanelOnScreen panel = mirrorOnlySource();
  EXPECT_TRUE(floats(panel));
  EXPECT_TRUE(eventually([&] {
    return areaOf(connection_, topLevelOf(connection_, panel.id())) == panel.area();
  })) << "it has a frame";
  ASSERT_TRUE(eventually([&] { return panel.shows(fourColours); }));

  constexpr Point inSource{sourceArea.x + 5, sourceArea.y + sourceArea.height - 5};
  ASSERT_EQ(screen_.pixel(inSource), blue);
  goToDesktop(1);
  ASSERT_TRUE(eventually([&] { return screen_.pixel(inSource) != blue; }));
  EXPECT_TRUE(panel.isOnScreen());
  EXPECT_TRUE(eventually([&] { return panel.shows(fourColours); }));
  connection_.sendToManager(source_->id(), "_NET_WM_DESKTOP", {1, byPerson});
  ASSERT_TRUE(eventually([&] { return screen_.pixel(inSource) == blue; }));
  source_->show(otherColours);
  EXPECT_TRUE(eventually([&] { return panel.shows(otherColours); }));
}

// herbstluftwm 0.9.5 shows each window on one desktop.
VISTREL_WITH_MANAGERS(WindowManagers, PanelOnEveryDesktop,
                      managersTestedHereBut({WindowManager::herbstluftwm}));

class PanelAboveOthers : public PanelWindow {};

TEST_P(PanelAboveOthers, LiesAboveOrdinaryAndFullScreenWindows) {
  const PanelOnScreen panel = mirrorOnlySource();
  auto film = openSource({.title = "Film", .picture = Quadrants::uniform(white)});
  activate(film->id());
  EXPECT_TRUE(isSeenAbove(panel, *film));
  for (int turn = 0; turn < 2; ++turn) {
    changeFullScreen(*film, enter);
    EXPECT_TRUE(isSeenAbove(panel, *film)) << "full-screen";
    changeFullScreen(*film, leave);
    EXPECT_TRUE(isSeenAbove(panel, *film)) << "not full-screen any more";
  }
  changeFullScreen(*film, enter);
  activate(source_->id());
  EXPECT_TRUE(isSeenAbove(panel, *film)) << "another window is active";
  activate(film->id());
  EXPECT_TRUE(isSeenAbove(panel, *film)) << "active again";

  const auto next = openFullScreen();
  activate(next->id());
  EXPECT_TRUE(isSeenAbove(panel, *next));
  film->destroy();
  EXPECT_TRUE(isSeenAbove(panel, *next));

  if (GetParam() == WindowManager::bspwm) return;  // 0.9.10 minimises nothing
  next->minimise();
  EXPECT_TRUE(eventually([&] { return panel.isOnScreen() && panel.shows(fourColours); }));
  EXPECT_TRUE(hasState(connection_, next->id(), "_NET_WM_STATE_HIDDEN"))
      << "it came back with the panel";
}

TEST_P(PanelAboveOthers, FloatsOnAfterAWindowWasFullScreen) {
  const PanelOnScreen panel = mirrorOnlySource();
  auto film = openSource({.title = "Film", .picture = Quadrants::uniform(white)});
  activate(film->id());
  for (int turn = 0; turn < 2; ++turn) {
    changeFullScreen(*film, enter);
    EXPECT_TRUE(isSeenAbove(panel, *film)) << "full-screen";
    changeFullScreen(*film, leave);
    EXPECT_TRUE(floats(panel));
  }
  for (TestWindow* each : {source_.get(), film.get()}) {
    activate(each->id());
    EXPECT_TRUE(isSeenAbove(panel, *each));
  }
  goToDesktop(1);
  ASSERT_TRUE(eventually([&] { return screen_.pixel(film->area().centre()) != white; }));
  EXPECT_TRUE(panel.isOnScreen());
  EXPECT_TRUE(floats(panel));
}

TEST_P(PanelAboveOthers, OpensAboveAFullScreenWindow) {
  startVistrel();
  input_.clickAt(vistrel_->pickerRows(1).front().centre());
  const auto film = openFullScreen();
  activate(vistrel_->picker().id());
  input_.clickAt(vistrel_->picker().mirrorButton());
  const PanelOnScreen panel = vistrel_->panels(1).front();
  activate(film->id());
  EXPECT_TRUE(isSeenAbove(panel, *film));
}

// i3 4.22 and herbstluftwm 0.9.5 keep no window above others.
VISTREL_WITH_MANAGERS(WindowManagers, PanelAboveOthers,
                      managersTestedHereBut({WindowManager::i3, WindowManager::herbstluftwm}));

class PanelAmongWindows : public PanelWindow {};

// There are two windows to go to and fro between; the panel would be the third.
TEST_P(PanelAmongWindows, IsNotOneToSwitchTo) {
  mirrorOnlySource();
  const xcb_window_t picker = vistrel_->picker().id();
  activate(picker);
  activate(source_->id());
  // A manager may overlook keys that come faster than it takes hold of the keyboard.
  constexpr std::chrono::seconds patience{3};
  EXPECT_TRUE(eventually([&] {
    input_.typeHolding(keyAlt, keyTab, 3);
    return eventually([&] { return activeWindow() == picker; }, patience);
  }));
}

// icewm 3.3.1 offers windows that are to be left out of taskbars too; the others have other keys.
VISTREL_WITH_MANAGERS(WindowManagers, PanelAmongWindows,
                      managersTestedHereBut({WindowManager::icewm, WindowManager::i3,
                                             WindowManager::awesome, WindowManager::bspwm,
                                             WindowManager::herbstluftwm}));

}  // namespace
}  // namespace vistrel::testbed
