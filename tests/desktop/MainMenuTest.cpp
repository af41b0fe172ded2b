#include <csignal>

#include "tests/desktop/DesktopTest.h"
#include "tests/desktop/MenuOnScreen.h"
#include "tests/support/AccessibilityBus.h"

namespace vistrel::testbed {
namespace {

/// The menus that the picker carries.
class MainMenu : public DesktopTest {
 protected:
  /// Starts the program with a screen reader, by which the menus are read.
  void startReading() {
    reader_ = std::make_unique<AccessibilityBus>(display_);
    startVistrel();
    ASSERT_TRUE(eventually([&] { return program().all("menu bar").size() == 1; }));
    activatePicker();
  }
  void activatePicker() {
    const xcb_window_t picker = vistrel_->picker().id();
    ASSERT_TRUE(eventually([&] { return activeWindow() == picker; }));
  }
  Accessible program() const { return reader_->program(vistrel_->process().pid()); }
  MenuOnScreen bar() const { return MenuOnScreen(program().all("menu bar").at(0)); }

  MenuOnScreen openByPointer(const std::string& title) {
    input_.rest(betweenClicks);
    input_.clickAt(bar().line(title));
    return bar().submenu(title);
  }
  MenuOnScreen openSubmenuByPointer(const MenuOnScreen& menu, const std::string& title) {
    input_.moveTo(menu.line(title));
    return menu.submenu(title);
  }
  MenuOnScreen openMirrorSubmenu(const std::string& title) {
    return openSubmenuByPointer(openByPointer("Mirror"), title);
  }
  /// Once the line is there, which a menu that is filled anew takes a moment for.
  void choose(const MenuOnScreen& menu, const std::string& title) {
    input_.moveTo(menu.line(title));
    ASSERT_TRUE(eventually([&] { return menu.isHighlighted(title); }));
    input_.click();
    EXPECT_TRUE(eventually([&] { return !menu.isOpen(); }));
  }
  /// Down to the line, by the arrow key, each time once the last one has arrived.
  void walkTo(const MenuOnScreen& menu, const std::string& title) {
    while (!menu.isHighlighted(title)) {
      const std::string former = menu.highlighted();
      input_.type(keyDown);
      ASSERT_TRUE(eventually([&] { return menu.highlighted() != former; })) << menu.lines();
    }
  }
  MenuOnScreen openMirrorSubmenuByKeys(const std::string& title) {
    input_.type(keyF10);
    bar().submenu("Vistrel");
    input_.type(keyRight);
    const MenuOnScreen mirror = bar().submenu("Mirror");
    walkTo(mirror, title);
    input_.type(keyRight);
    return mirror.submenu(title);
  }
  void type(char letter) { input_.typeHolding(keyControl, static_cast<std::uint32_t>(letter)); }

  ::testing::AssertionResult comesToRead(const MenuOnScreen& menu, const std::string& lines) {
    if (eventually([&] { return menu.lines() == lines; })) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "it reads:\n" << menu.lines();
  }

  std::unique_ptr<AccessibilityBus> reader_;
};

TEST_F(MainMenu, EachMenuHasItsLines) {
  startReading();
  EXPECT_EQ(bar().lines(), "Vistrel ▸\nMirror ▸\nWindow ▸\n");
  const MenuOnScreen application = openByPointer("Vistrel");
  EXPECT_EQ(application.lines(), R"(About Vistrel
---
Hide Vistrel
Quit Vistrel
)");
  input_.moveTo(bar().line("Mirror"));
  const MenuOnScreen mirror = bar().submenu("Mirror");
  EXPECT_EQ(mirror.lines(), R"(Window Picker…
Mirror Window ▸
Focus Mirror ▸
---
Hide All Mirrors
)");
  EXPECT_FALSE(application.isOpen());
  EXPECT_EQ(openSubmenuByPointer(mirror, "Mirror Window").lines(), "(Looking for windows…)\n");
  EXPECT_EQ(openSubmenuByPointer(mirror, "Focus Mirror").lines(), "(No window mirrors open)\n");
  input_.moveTo(bar().line("Window"));
  EXPECT_EQ(bar().submenu("Window").lines(), R"(Minimize
Close
---
✓ Vistrel
)");
}

TEST_F(MainMenu, WindowsAreMirroredAndMirrorsAreFoundByPointer) {
  const auto source = openSource({.title = "Save & &Close a_b\tc\nd", .decorated = false});
  const auto second = openSource({.title = "שלום 🙂", .application = "Zebra"});
  startReading();
  const MenuOnScreen windows = openMirrorSubmenu("Mirror Window");
  EXPECT_TRUE(comesToRead(windows, R"((Sample)
  Save & &Close a_b c d
---
(Zebra)
  שלום 🙂
)"));
  choose(windows, "  Save & &Close a_b c d");
  const PanelOnScreen lower = vistrel_->panels(1).front();

  const auto third = openSource({.title = "a", .application = "Sample"});
  activate(vistrel_->picker().id());
  openMirrorSubmenu("Mirror Window");
  EXPECT_TRUE(comesToRead(windows, R"((Sample)
  a
✓   Save & &Close a_b c d
---
(Zebra)
  שלום 🙂
)"));
  choose(windows, "  שלום 🙂");
  const PanelOnScreen upper = vistrel_->panels(2).back();
  EXPECT_TRUE(eventually([&] { return isAbove(connection_, upper.id(), lower.id()); }));

  const MenuOnScreen mirrors = openMirrorSubmenu("Focus Mirror");
  EXPECT_EQ(mirrors.lines(), "Sample — Save & &Close a_b c d\nZebra — שלום 🙂\n");
  choose(mirrors, "Sample — Save & &Close a_b c d");
  EXPECT_TRUE(eventually([&] { return isAbove(connection_, lower.id(), upper.id()); }));

  choose(openByPointer("Mirror"), "Hide All Mirrors");
  vistrel_->panels(0);
}

TEST_F(MainMenu, AWindowIsMirroredByKeysAlone) {
  const auto source = openSource();
  startReading();
  const MenuOnScreen windows = openMirrorSubmenuByKeys("Mirror Window");
  ASSERT_TRUE(comesToRead(windows, "(Sample)\n  Document\n"));
  walkTo(windows, "  Document");
  input_.type(keyReturn);
  vistrel_->panels(1);
  EXPECT_TRUE(eventually([&] { return !windows.isOpen(); }));
}

TEST_F(MainMenu, AnOpenListThatIsFilledAnewStaysOpenAndInUse) {
  const auto source = openSource();
  startReading();
  const MenuOnScreen windows = openMirrorSubmenu("Mirror Window");
  ASSERT_TRUE(comesToRead(windows, "(Sample)\n  Document\n"));
  choose(windows, "  Document");
  vistrel_->panels(1);
  input_.moveTo(vistrel_->picker().refreshButton());
  const auto earlier = openSource({.title = "Earlier", .application = "Alpha"});
  const auto later = openSource({.title = "Later", .application = "Zebra"});
  activate(vistrel_->picker().id());
  // It opens with what was there before, on its only line.
  openMirrorSubmenuByKeys("Mirror Window");
  ASSERT_TRUE(comesToRead(windows, R"((Alpha)
  Earlier
---
(Sample)
✓   Document
---
(Zebra)
  Later
)"));
  EXPECT_TRUE(windows.isOpen());
  EXPECT_TRUE(windows.isHighlighted("  Document"));
  input_.type(keyDown);
  EXPECT_TRUE(eventually([&] { return windows.isHighlighted("  Later"); }));
  choose(windows, "  Earlier");
  vistrel_->panels(2);
}

TEST_F(MainMenu, TheAboutBoxTellsTheVersion) {
  startReading();
  const xcb_window_t picker = vistrel_->picker().id();
  choose(openByPointer("Vistrel"), "About Vistrel");
  ASSERT_TRUE(eventually([&] { return program().all("alert message").size() == 1; }));
  const Accessible box = program().all("alert message").at(0);
  // Once the manager has placed it and given it the keyboard, the program knows where it is.
  ASSERT_TRUE(eventually([&] {
    return activeWindow() != picker && areaOf(connection_, activeWindow()) == box.area();
  }));
  EXPECT_EQ(box.outline(), R"(alert message "Vistrel"
  graphic ""
  label "Vistrel 1.0.0" [SetFocus]
  panel ""
    push button "OK" [Press, SetFocus]
  label "Live-mirror any on-screen window into a floating, always-on-top panel.

Made by Tollbeck." [SetFocus]
)");
  input_.clickAt(box.only("push button", "OK").area().centre());
  EXPECT_TRUE(eventually([&] { return program().all("alert message").empty(); }));
}

TEST_F(MainMenu, ItsKeysReloadMinimiseAndCloseThePicker) {
  const auto source = openSource();
  const PanelOnScreen panel = mirrorOnlySource();
  const PickerOnScreen picker = vistrel_->picker();
  const auto second = openSource({.title = "Second"});
  // The manager gives the keyboard to a new window, perhaps a moment after it is there.
  ASSERT_TRUE(eventually([&] { return activeWindow() == second->id(); }));
  activate(picker.id());
  type('n');
  EXPECT_EQ(vistrel_->pickerRows(2).size(), 2u);

  type('m');
  EXPECT_TRUE(
      eventually([&] { return hasState(connection_, picker.id(), "_NET_WM_STATE_HIDDEN"); }));
  EXPECT_TRUE(eventually([&] { return !picker.isOnScreen(); }));
  activate(picker.id());
  EXPECT_TRUE(eventually([&] { return picker.isOnScreen(); }));

  type('w');
  EXPECT_TRUE(eventually([&] { return !picker.isOnScreen(); }));
  source->show(Quadrants::uniform(blue));
  EXPECT_TRUE(eventually([&] { return panel.shows(Quadrants::uniform(blue)); }));
}

TEST_F(MainMenu, ItsKeysHideAndQuitTheProgram) {
  const auto source = openSource();
  const PanelOnScreen panel = mirrorOnlySource();
  const PickerOnScreen picker = vistrel_->picker();
  activate(picker.id());
  type('h');
  EXPECT_TRUE(eventually([&] { return !picker.isOnScreen() && !panel.isOnScreen(); }));
  EXPECT_FALSE(vistrel_->process().ending().has_value());

  vistrel_.reset();
  startVistrel();
  mirrorRow(0, 1, 1);
  activate(vistrel_->picker().id());
  const std::unique_ptr<RunningVistrel> quitting = std::move(vistrel_);
  type('q');
  const auto ending = quitting->process().waitForEnd();
  ASSERT_TRUE(ending.has_value());
  EXPECT_EQ(ending->exitStatus, 0);
  EXPECT_EQ(quitting->process().standardError(), "");
}

}  // namespace
}  // namespace vistrel::testbed
