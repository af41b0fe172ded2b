#pragma once

#include <algorithm>
#include <gtest/gtest.h>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "tests/desktop/RunningVistrel.h"
#include "tests/support/EachWindowManager.h"
#include "tests/support/InputDriver.h"
#include "tests/support/ManagerProbe.h"
#include "tests/support/Ping.h"
#include "tests/support/Poll.h"
#include "tests/support/PrivateDisplay.h"
#include "tests/support/TestWindow.h"
#include "tests/support/XWindows.h"

namespace vistrel::testbed {

/// A session with ordinary windows in which the built program runs. Whatever the test does, the
/// program is still there at its end and has written nothing.
class DesktopTest : public ::testing::Test {
 protected:
  /// Where the first mirror opens, and how far the next one lies from it.
  static constexpr Point firstPanel{32, 32};
  static constexpr int cascadeStep = 28;
  /// A source without decorations whose panel comes to whole numbers: 340 × 196.
  static constexpr Rect sourceArea{240, 480, 1000, 500};

  /// Who asks, in messages to the manager (EWMH 1.5, "Source indication in requests").
  static constexpr std::uint32_t byPerson = 2;

  DesktopTest() = default;
  /// In a session of other options, whose monitors have `scale` pixels to a point.
  explicit DesktopTest(const PrivateDisplay::Options& options, double scale = 1)
      : display_(options), scale_(scale) {}

  void TearDown() override {
    if (HasFailure()) {
      saveScreen();
    }
    if (vistrel_) {
      EXPECT_FALSE(vistrel_->process().ending().has_value()) << "the program ended";
      EXPECT_EQ(vistrel_->process().standardError(), "");
      EXPECT_EQ(vistrel_->process().standardOutput(), "");
    }
  }

  /// Opens a source window; those that are to be listed come before `startVistrel`.
  std::unique_ptr<TestWindow> openSource(const TestWindow::Options& options) {
    return std::make_unique<TestWindow>(display_.name(), options);
  }
  std::unique_ptr<TestWindow> openSource() {
    return openSource({.area = sourceArea, .decorated = false});
  }

  void startVistrel(const std::vector<std::string>& arguments = {}) {
    vistrel_ = std::make_unique<RunningVistrel>(display_, connection_, arguments, scale_);
  }

  /// Double-clicks row `row` of the picker, which lists `count` windows, and waits until
  /// `panelsAfter` panels are on screen; gives the newest.
  PanelOnScreen mirrorRow(std::size_t row, std::size_t count, std::size_t panelsAfter) {
    awaitManager(connection_);  // it may move the picker until then, or be too busy for a press
    input_.rest(betweenClicks);
    input_.clickAt(vistrel_->pickerRows(count).at(row).centre(), 2);
    return vistrel_->panels(panelsAfter).back();
  }
  /// Starts the program and mirrors the only source there is.
  PanelOnScreen mirrorOnlySource() {
    startVistrel();
    return mirrorRow(0, 1, 1);
  }

  /// The window that the manager has given the keyboard to (EWMH 1.5, _NET_ACTIVE_WINDOW).
  xcb_window_t activeWindow() const {
    const auto active = connection_.numbers(connection_.root(), "_NET_ACTIVE_WINDOW");
    return active.empty() ? xcb_window_t{XCB_WINDOW_NONE} : active.front();
  }

  /// Waits until the program has asked the manager for all that follows from what has happened to
  /// it so far, such as to come forward: none of that can undo what the test asks for next.
  void letProgramCatchUp() {
    EXPECT_TRUE(eventually([&] {
      const auto windows = windowsOfProcess(connection_, vistrel_->process().pid());
      const auto asked = std::ranges::find_if(
          windows, [&](xcb_window_t window) { return takesPing(connection_, window); });
      return asked == windows.end() || answersPing(display_.name(), *asked);
    }));
  }
  /// Has the manager activate the window, and waits until it has heard of it: one whose active
  /// window that is already takes the moment of hearing for a person's last input.
  void activate(xcb_window_t window) {
    if (vistrel_) {
      letProgramCatchUp();
    }
    connection_.sendToManager(window, "_NET_ACTIVE_WINDOW", {byPerson, 0, 0});
    awaitManager(connection_);
    EXPECT_TRUE(eventually([&] { return activeWindow() == window; }));
  }
  void goToDesktop(std::uint32_t number) {
    if (vistrel_) {
      letProgramCatchUp();
    }
    connection_.sendToManager(connection_.root(), "_NET_CURRENT_DESKTOP", {number, 0});
    EXPECT_TRUE(eventually([&] { return currentDesktop() == number; }));
  }
  std::uint32_t currentDesktop() const {
    return connection_.numbers(connection_.root(), "_NET_CURRENT_DESKTOP").at(0);
  }
  /// As a person asks the manager to (EWMH 1.5, _NET_MOVERESIZE_WINDOW: static gravity, x and y, by
  /// a pager).
  void moveByManager(xcb_window_t window, Point there) const {
    constexpr std::uint32_t staticGravityXAndYByPager = 10 | 1 << 8 | 1 << 9 | 2 << 12;
    connection_.sendToManager(window, "_NET_MOVERESIZE_WINDOW",
                              {staticGravityXAndYByPager, static_cast<std::uint32_t>(there.x),
                               static_cast<std::uint32_t>(there.y), 0, 0});
  }
  /// The program's menus, innermost last: no other windows of its are out of the manager's hands,
  /// tool tips and what is in a tray aside.
  std::vector<xcb_window_t> menusOnScreen() const {
    std::vector<xcb_window_t> menus = windowsOfProcess(connection_, vistrel_->process().pid());
    std::erase_if(menus, [&](xcb_window_t window) {
      return !isViewable(connection_, window) || !isUnmanaged(connection_, window) ||
             isEmbedded(connection_, window);
    });
    return menus;
  }
  /// Waits until the panel is there.
  ::testing::AssertionResult becomes(const PanelOnScreen& panel, Rect area) {
    if (eventually([&] { return panel.area() == area; })) {
      return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << panel.area() << " instead of " << area;
  }

  /// Moves the pointer there, and waits until a press goes to the panel: where nothing of it is
  /// drawn yet, or the manager has still to give its frame the panel's shape or the windows their
  /// order, one goes to what lies below; and mutter 43.8 loses one where it has still to draw a
  /// panel that has moved there.
  void pointAt(const PanelOnScreen& panel, Point there) {
    input_.moveTo(there);
    EXPECT_TRUE(eventually([&] { return panel.dot() != Dot::other; })) << "it is not drawn";
    int timesOnTop = 0;
    EXPECT_TRUE(eventually([&] {
      awaitManager(connection_);
      const bool isOnTop = pointerOn(connection_).topLevel == topLevelOf(connection_, panel.id());
      timesOnTop = isOnTop ? timesOnTop + 1 : 0;
      return timesOnTop == 8;
    }));
  }

  /// For whoever looks into a failure: what the screen showed at its end.
  void saveScreen() const {
    const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
    const std::string file =
        std::string("failed/") + test->test_suite_name() + "." + test->name() + ".png";
    try {
      screen_.readAll().savePng(file);
      std::cerr << "The screen is saved as " << file << ".\n";
    } catch (const std::exception& failure) {
      std::cerr << "The screen cannot be saved: " << failure.what() << '\n';
    }
  }

  /// Long enough that two clicks are no double-click.
  static constexpr std::uint32_t betweenClicks = 700;

  PrivateDisplay display_;
  const double scale_ = 1;
  XConnection connection_{display_.name()};
  ScreenReader screen_{connection_};
  InputDriver input_{connection_};
  std::unique_ptr<RunningVistrel> vistrel_;
};

/// The same under a window manager that the test's parameter names.
class DesktopTestWithManager : public DesktopTest,
                               public ::testing::WithParamInterface<WindowManager> {
 protected:
  DesktopTestWithManager() : DesktopTest({.windowManager = GetParam()}) {}

  /// How high a panel is that is rolled up. herbstluftwm 0.9.5 lets no window be lower than that.
  static int rolledUpHeight() {
    return GetParam() == WindowManager::herbstluftwm ? 32 : PanelOnScreen::titleBarHeight;
  }
};

}  // namespace vistrel::testbed
