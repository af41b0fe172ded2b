#pragma once

#include <algorithm>
#include <cstdint>
#include <gtest/gtest.h>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "tests/desktop/MenuOnScreen.h"
#include "tests/desktop/RunningVistrel.h"
#include "tests/support/AccessibilityBus.h"
#include "tests/support/FakeInput.h"
#include "tests/support/HandOnX.h"
#include "tests/support/KWinScreen.h"
#include "tests/support/KWinScripts.h"
#include "tests/support/KWinSession.h"
#include "tests/support/NativeWindow.h"
#include "tests/support/TestWindow.h"
#include "tests/support/XWindows.h"

namespace vistrel::testbed {

/// A session of KWin in which the built program runs, used by a person with the compositor's own
/// pointer and keys, who has the screen read aloud. Whatever the test does, the program is still
/// there at its end and has written nothing. One test for a process.
class KWinDesktopTest : public ::testing::Test {
 protected:
  static constexpr Point firstPanel{32, 32};
  static constexpr Quadrants otherColours{yellow, blue, red, green};
  static constexpr int screenWidth = 1280;
  static constexpr int screenHeight = 1024;

  /// The kernel's numbers (linux/input-event-codes.h).
  static constexpr std::uint32_t keyEscape = 1;
  static constexpr std::uint32_t keyA = 30;

  KWinDesktopTest() : KWinDesktopTest({.granted = {VISTREL_PROGRAM}}) {}
  explicit KWinDesktopTest(const KWinSession::Options& options) : desktop_(options) {}

  void TearDown() override {
    if (HasFailure()) {
      saveScreen("failed");
    }
    if (vistrel_) {
      EXPECT_FALSE(vistrel_->process().ending().has_value()) << "the program ended";
      EXPECT_EQ(vistrel_->process().standardError(), "");
      EXPECT_EQ(vistrel_->process().standardOutput(), "");
    }
  }

  /// At that place, in the compositor's pixels, which no other window of that title shares.
  std::unique_ptr<NativeWindow> openNative(const NativeWindow::Options& options, Point place) {
    auto window = std::make_unique<NativeWindow>(desktop_.environment(), options);
    kwin_.moveTo(options.title, place);
    return window;
  }

  /// Waits until the picker lists `count` windows, out of the way of panels and sources.
  void startVistrel(std::size_t count) {
    vistrel_ = std::make_unique<RunningVistrel>(
        connection_, RunningVistrel::command({}, desktop_.environment()), 1, screen_);
    const xcb_window_t picker = vistrel_->picker().id();
    kwin_.moveTo("Vistrel", {740, 480});
    EXPECT_TRUE(eventually([&] { return areaOf(connection_, picker)->x >= 740; }));
    EXPECT_TRUE(eventually([&] { return rows().size() == count; }));
  }
  Accessible program() const { return reader_.program(vistrel_->process().pid()); }
  /// As the picker lists them.
  std::vector<std::string> rows() const {
    std::vector<std::string> names;
    for (const Accessible& row : program().all("list item")) {
      names.push_back(row.name());
    }
    return names;
  }

  /// Double-clicks the picker's row of that name, and waits until `panelsAfter` panels are on
  /// screen; gives the newest.
  PanelOnScreen mirror(const std::string& name, std::size_t panelsAfter = 1) {
    kwin_.raise("Vistrel");
    handOnX_.clickAt(program().only("list item", name).area().centre(), 2);
    return vistrel_->panels(panelsAfter).back();
  }
  ::testing::AssertionResult becomes(const PanelOnScreen& panel, Rect area) {
    if (eventually([&] { return panel.area() == area; })) {
      return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << panel.area() << " instead of " << area;
  }
  ::testing::AssertionResult comesToShow(const PanelOnScreen& panel, const Quadrants& picture) {
    if (eventually([&] { return panel.shows(picture); })) {
      return ::testing::AssertionSuccess();
    }
    const Quadrants shown = panel.picture();
    return ::testing::AssertionFailure() << shown.topLeft << ' ' << shown.topRight << ' '
                                         << shown.bottomLeft << ' ' << shown.bottomRight;
  }

  void pressMenuButton(const PanelOnScreen& panel) {
    handOnX_.clickAt(panel.titleBar(), 1, FakeInput::Button::right);
  }
  /// The panel's context menu, with the pointer on its first line: keys may go to nobody for a
  /// moment yet.
  MenuOnScreen openMenu(const PanelOnScreen& panel) {
    const Point corner = panel.titleBar();
    return menuTold(
        reader_, vistrel_->process().pid(), [&] { pressMenuButton(panel); },
        [&] {
          handOnX_.pointAt({corner.x + 40, corner.y + 12});
        });
  }
  void choose(const MenuOnScreen& menu, const std::string& title) {
    handOnX_.pointAt(menu.line(title));
    ASSERT_TRUE(eventually([&] { return menu.isHighlighted(title); })) << menu.isOpen();
    hand_.click();
    EXPECT_TRUE(eventually([&] { return !isMenuOnScreen(); }));
  }
  /// Out of the compositor's hands as menus are.
  bool isMenuOnScreen() const {
    const auto windows = windowsOfProcess(connection_, vistrel_->process().pid());
    return std::ranges::any_of(windows, [&](xcb_window_t window) {
      return isViewable(connection_, window) && isUnmanaged(connection_, window);
    });
  }
  /// The title of the window that has the keyboard.
  std::string active() {
    return kwin_.run("tell(workspace.activeClient ? workspace.activeClient.caption : '')");
  }

  /// The whole screen, in a file that bears the test's name.
  void saveScreen(const std::string& folder) const {
    const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
    const std::string file = folder + "/" + test->test_suite_name() + "." + test->name() + ".png";
    try {
      screen_->readAll().savePng(file);
      std::cerr << "The screen is saved as " << file << ".\n";
    } catch (const std::exception& failure) {
      std::cerr << "The screen cannot be saved: " << failure.what() << '\n';
    }
  }

  /// A session which this process belongs to.
  struct AdoptedSession : KWinSession {
    explicit AdoptedSession(const Options& options) : KWinSession(options) { adoptEnvironment(); }
  };

  AdoptedSession desktop_;
  XConnection connection_{desktop_.xName()};
  std::shared_ptr<const ScreenReader> screen_ =
      std::make_shared<KWinScreen>(connection_, desktop_.busAddress());
  KWinScripts kwin_{desktop_.busAddress()};
  const WaylandClient client_;
  FakeInput hand_{client_};
  HandOnX handOnX_{hand_, connection_};
  AccessibilityBus reader_{desktop_.busAddress()};
  std::unique_ptr<RunningVistrel> vistrel_;
};

/// A mirror of a native window that has the keyboard, with a panel of whole numbers: 272 × 162.
class OneNativeSource : public KWinDesktopTest {
 protected:
  using KWinDesktopTest::KWinDesktopTest;

  static constexpr const char* row = "com.example.sample — Source";

  PanelOnScreen mirrorSource() {
    startVistrel(1);
    const PanelOnScreen panel = mirror(row);
    EXPECT_TRUE(becomes(panel, PanelOnScreen::computedArea({0, 0, 800, 400}, firstPanel)));
    EXPECT_TRUE(comesToShow(panel, fourColours));
    kwin_.raise("Source");
    return panel;
  }
  /// Whether what the source draws comes to be seen in the panel, whose dot is green meanwhile.
  bool isLive(const PanelOnScreen& panel) {
    for (const Quadrants& picture : {otherColours, fourColours}) {
      source_->show(picture);
      if (!eventually([&] { return panel.shows(picture); })) return false;
    }
    bool isOther = false;
    return eventually([&] {
      isOther = !isOther;
      source_->show(isOther ? otherColours : fourColours);
      return panel.dot() == Dot::live;
    });
  }

  std::unique_ptr<NativeWindow> source_ =
      openNative({.title = "Source", .width = 800, .height = 400}, {40, 560});
};

}  // namespace vistrel::testbed
