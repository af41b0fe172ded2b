#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>

#include "tests/desktop/DesktopTest.h"
#include "tests/support/EmbeddingTray.h"
#include "tests/support/NotifierHost.h"

namespace vistrel::testbed {
namespace {

using Opening = TrayItem::Opening;

/// The display server, which lists of windows come from, answers nobody while there is one of
/// these.
class HaltedServer {
 public:
  explicit HaltedServer(const PrivateDisplay& display) : pid_(display.serverPid()) {
    kill(pid_, SIGSTOP);
  }
  HaltedServer(const HaltedServer&) = delete;
  HaltedServer& operator=(const HaltedServer&) = delete;
  ~HaltedServer() { kill(pid_, SIGCONT); }

 private:
  const pid_t pid_;
};

/// The program's icon in a tray, by the status notifier protocol.
class Tray : public DesktopTest {
 protected:
  explicit Tray(const PrivateDisplay::Options& options = {}) : DesktopTest(options) {}

  void startTray() { tray_ = std::make_unique<NotifierHost>(display_); }
  /// Starts a tray and the program, and waits for its picker, which lists `count` windows.
  TrayItem startInTray(std::size_t count) {
    startTray();
    startVistrel();
    vistrel_->pickerRows(count);
    return tray_->icon();
  }

  void hideByKey() {
    activate(vistrel_->picker().id());
    input_.typeHolding(keyControl, 'h');
  }
  /// Whether a person finds the window in a taskbar.
  bool isMinimised(xcb_window_t window) const {
    return hasState(connection_, window, "_NET_WM_STATE_HIDDEN");
  }
  /// Whether the manager knows of the window (EWMH 1.5, _NET_CLIENT_LIST).
  bool isManaged(xcb_window_t window) const {
    const auto all = connection_.numbers(connection_.root(), "_NET_CLIENT_LIST");
    return std::ranges::find(all, window) != all.end();
  }
  ::testing::AssertionResult pickerComesToTheFront() {
    const PickerOnScreen picker = vistrel_->picker();
    if (eventually([&] { return activeWindow() == picker.id(); })) {
      return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << "without the keyboard";
  }

  /// Opens the menu. One that has kept the person waiting for as long as it may shows the windows
  /// that were known before, and is opened anew: the machine is busy.
  static std::vector<TrayMenuLine> openInTime(TrayItem& icon, Opening opening = Opening::asked) {
    constexpr std::chrono::milliseconds longestWait{700};
    std::vector<TrayMenuLine> menu;
    const bool isInTime = eventually([&] {
      const auto start = std::chrono::steady_clock::now();
      menu = icon.openMenu(opening);
      const bool isLate = std::chrono::steady_clock::now() - start >= longestWait;
      if (isLate) icon.closeMenu();
      return !isLate;
    });
    EXPECT_TRUE(isInTime) << "the list of windows is late each time";
    return menu;
  }

  /// As by its own command.
  void expectProgramToEnd() {
    const std::unique_ptr<RunningVistrel> ended = std::move(vistrel_);
    const auto ending = ended->process().waitForEnd();
    ASSERT_TRUE(ending.has_value());
    EXPECT_EQ(ending->exitStatus, 0);
    EXPECT_EQ(ended->process().standardError(), "");
  }

  std::unique_ptr<NotifierHost> tray_;
};

TEST_F(Tray, TheIconSaysWhatItIs) {
  const TrayItem icon = startInTray(0);
  EXPECT_EQ(icon.text("Id"), "vistrel");
  EXPECT_EQ(icon.text("Title"), "Vistrel");
  EXPECT_EQ(icon.text("Category"), "ApplicationStatus");
  EXPECT_EQ(icon.text("Status"), "Active");
  EXPECT_EQ(icon.toolTipTitle(), "Vistrel");
  EXPECT_FALSE(icon.truth("ItemIsMenu"));
  EXPECT_EQ(icon.text("IconName"), "") << "the theme does not have it";
  std::vector<int> sizes;
  for (const TrayItem::Pixmap& pixmap : icon.pixmaps()) {
    sizes.push_back(pixmap.width);
    EXPECT_EQ(pixmap.height, pixmap.width);
    const auto side = static_cast<std::size_t>(pixmap.width);
    ASSERT_EQ(pixmap.pixels.size(), side * side * 4);
    // In the middle of the window that the icon shows, at its left: opaque, and of the sea's blue.
    const auto* const pixel = &pixmap.pixels[(side * 7 / 8 * side + side / 4) * 4];
    EXPECT_EQ(pixel[0], 255);
    EXPECT_GT(pixel[3], pixel[1]) << side;
  }
  EXPECT_EQ(sizes, (std::vector{16, 22, 24, 32, 44, 48, 64, 96, 128}));
}

TEST_F(Tray, TheIconIsNamedWhereTheThemeHasIt) {
  const auto theme = display_.home() / "data/icons/hicolor";
  std::filesystem::create_directories(theme / "22x22/apps");
  std::ofstream(theme / "index.theme") << "[Icon Theme]\nName=Hicolor\nDirectories=22x22/apps\n"
                                          "[22x22/apps]\nSize=22\nType=Fixed\n";
  std::ofstream(theme / "22x22/apps/vistrel.png") << "a picture";
  EXPECT_EQ(startInTray(0).text("IconName"), "vistrel");
}

TEST_F(Tray, IsMadeAnewEachTimeAndItsItemsDoWhatTheySay) {
  const auto source = openSource({.title = "Save & &Close a_b __c\td", .decorated = false});
  const auto second = openSource({.title = "שלום 🙂", .application = "Zebra_&"});
  TrayItem icon = startInTray(2);
  auto menu = openInTime(icon);
  EXPECT_EQ(textOf(menu), R"(Window Picker…
Mirror a Window ▸
    (Sample)
      Save & &Close a_b __c d
    ---
    (Zebra_&)
      שלום 🙂
---
Quit Vistrel
)");
  EXPECT_EQ(menu.at(1).children.at(1).label, "  Save & &Close a__b ____c\u2003d");
  icon.choose(menu, "  Save & &Close a_b __c\u2003d");
  vistrel_->panels(1);
  EXPECT_TRUE(eventually([&] { return icon.wasToldOfNewLayout(); }))
      << "it has one line more, which trays may have to make room for beforehand";

  const auto third = openSource({.title = "a", .application = "Sample"});
  menu = openInTime(icon);
  EXPECT_EQ(textOf(menu), R"(Window Picker…
Mirror a Window ▸
    (Sample)
      a
    ✓   Save & &Close a_b __c d
    ---
    (Zebra_&)
      שלום 🙂
Hide All Mirrors
---
Quit Vistrel
)");
  icon.choose(menu, "  שלום 🙂");
  vistrel_->panels(2);

  icon.choose(icon.openMenu(), "Hide All Mirrors");
  vistrel_->panels(0);
  EXPECT_EQ(icon.openMenu().size(), 4u);
}

TEST_F(Tray, IsMadeAnewHoweverATrayLetsItKnow) {
  const auto source = openSource();
  TrayItem icon = startInTray(1);
  const auto menuOf = [](const std::string& windows) {
    return "Window Picker…\nMirror a Window ▸\n    (Sample)\n" + windows + "---\nQuit Vistrel\n";
  };
  EXPECT_EQ(textOf(openInTime(icon, Opening::read)), menuOf("      Document\n"));
  icon.closeMenu();
  {
    const auto second = openSource({.title = "Second"});
    const auto menu = openInTime(icon, Opening::told);
    EXPECT_EQ(textOf(menu), menuOf("      Document\n      Second\n"));
    icon.choose(menu, "  Document");
    vistrel_->panels(1);
  }
  icon.choose(icon.openMenu(Opening::read), "Hide All Mirrors");
  vistrel_->panels(0);
  EXPECT_EQ(textOf(openInTime(icon, Opening::told)), menuOf("      Document\n"));
  icon.closeMenu();
  {
    const auto brief = openSource({.title = "Brief"});
    EXPECT_EQ(textOf(openInTime(icon, Opening::askedInVain)),
              menuOf("      Brief\n      Document\n"));
    icon.closeMenu();
  }
  // This one does not say that it has closed the menu.
  const auto third = openSource({.title = "Third"});
  const auto formerMenu = openInTime(icon, Opening::told);
  EXPECT_EQ(textOf(formerMenu), menuOf("      Document\n      Third\n"));
  EXPECT_EQ(textOf(icon.openMenu(Opening::asked)), menuOf("      Document\n      Third\n"));
  // A person is still looking at the former menu.
  icon.choose(formerMenu, "  Third");
  EXPECT_TRUE(vistrel_->panels(1).front().isOnScreen());
}

TEST_F(Tray, QuitsTheProgramThatShowsNoWindow) {
  TrayItem icon = startInTray(0);
  const PickerOnScreen picker = vistrel_->picker();
  connection_.sendToManager(picker.id(), "_NET_CLOSE_WINDOW", {0, byPerson});
  EXPECT_TRUE(eventually([&] { return !picker.isOnScreen(); }));
  icon.choose(icon.openMenu(), "Quit Vistrel");
  expectProgramToEnd();
}

TEST_F(Tray, AListThatDoesNotComeKeepsNobodyWaitingForever) {
  const auto source = openSource();
  TrayItem icon = startInTray(1);
  EXPECT_TRUE(pickerComesToTheFront());
  // Whatever the program asks the server about its own start is answered then.
  letProgramCatchUp();
  std::string menu;
  {
    const HaltedServer halted(display_);
    menu = textOf(icon.openMenu());
  }
  icon.closeMenu();
  EXPECT_EQ(menu,
            "Window Picker…\nMirror a Window ▸\n    (Looking for windows…)\n"
            "---\nQuit Vistrel\n");
  EXPECT_EQ(textOf(openInTime(icon)),
            "Window Picker…\nMirror a Window ▸\n    (Sample)\n      Document\n"
            "---\nQuit Vistrel\n");
}

TEST_F(Tray, ATrayThatShowsNoMenusHasItShown) {
  const auto source = openSource();
  const TrayItem icon = startInTray(1);
  EXPECT_TRUE(pickerComesToTheFront());
  icon.askForMenu({700, 40});
  ASSERT_TRUE(eventually([&] { return menusOnScreen().size() == 1; }));
  const Rect menu = areaOf(connection_, menusOnScreen().front()).value();
  EXPECT_EQ(menu.x, 700);
  EXPECT_EQ(menu.y, 40);
  input_.type(keyDown);
  input_.type(keyDown);
  input_.type(keyRight);
  ASSERT_TRUE(eventually([&] { return menusOnScreen().size() == 2; }));
  input_.type(keyReturn);
  vistrel_->panels(1);
  EXPECT_TRUE(eventually([&] { return menusOnScreen().empty(); }));
}

TEST_F(Tray, TheDoorToAHiddenProgramIsTheTrayWhileThereIsOne) {
  const auto source = openSource();
  startVistrel();
  const PanelOnScreen panel = mirrorRow(0, 1, 1);
  const PickerOnScreen picker = vistrel_->picker();
  hideByKey();
  EXPECT_TRUE(eventually([&] { return isMinimised(picker.id()) && !panel.isOnScreen(); }))
      << "without a tray it stays in the taskbar";

  startTray();
  const TrayItem icon = tray_->icon();
  EXPECT_TRUE(eventually([&] { return !isManaged(picker.id()); }));
  icon.activate();
  EXPECT_TRUE(pickerComesToTheFront());
  EXPECT_TRUE(eventually([&] { return panel.isOnScreen(); }));

  hideByKey();
  EXPECT_TRUE(eventually([&] { return !isManaged(picker.id()) && !panel.isOnScreen(); }));
  tray_->show(false);
  EXPECT_TRUE(eventually([&] { return isMinimised(picker.id()); })) << "nobody shows the icon";
  EXPECT_FALSE(picker.isOnScreen());
  tray_->show(true);
  EXPECT_TRUE(eventually([&] { return !isManaged(picker.id()); }));
  tray_.reset();
  EXPECT_TRUE(eventually([&] { return isMinimised(picker.id()); })) << "the tray is gone";
  activate(picker.id());
  EXPECT_TRUE(eventually([&] { return picker.isOnScreen() && panel.isOnScreen(); }));

  startTray();
  EXPECT_EQ(tray_->icon().openMenu().size(), 5u);
}

TEST_F(Tray, OneThatEmbedsWindowsHasItWhereThereIsNoOther) {
  constexpr Rect area{1200, 0, 22, 22};
  const auto source = openSource();
  startVistrel();
  const PickerOnScreen picker = vistrel_->picker();
  auto older = std::make_unique<EmbeddingTray>(display_.name(), area);
  // The program may find the tray just before it is told of it, and then makes a second icon.
  letProgramCatchUp();
  const xcb_window_t icon = older->icon();
  EXPECT_TRUE(eventually([&] {
    return screen_.pixel({area.x + 8, 20}) != EmbeddingTray::grey;
  })) << "nothing is drawn";
  activate(source->id());
  input_.clickAt(area.centre());
  EXPECT_TRUE(eventually([&] { return activeWindow() == picker.id(); }));
  input_.rest(betweenClicks);
  input_.click(1, InputDriver::Button::right);
  EXPECT_TRUE(eventually([&] { return menusOnScreen().size() == 1; }));
  input_.type(keyEscape);
  EXPECT_TRUE(eventually([&] { return menusOnScreen().empty(); }));

  startTray();
  tray_->icon();
  EXPECT_TRUE(eventually([&] { return !isViewable(connection_, icon); })) << "there are two";
  tray_.reset();
  EXPECT_TRUE(isViewable(connection_, older->icon()));
  older.reset();
  // An icon that is in no tray is an unmanaged window of its own, as a menu is.
  EXPECT_TRUE(eventually([&] { return menusOnScreen().empty(); }));
  EmbeddingTray later(display_.name(), area);
  EXPECT_TRUE(isViewable(connection_, later.icon()));
}

TEST_F(Tray, OneThatEmbedsWindowsQuitsTheProgramToo) {
  constexpr Rect area{1200, 0, 22, 22};
  startVistrel();
  vistrel_->pickerRows(0);
  EmbeddingTray older(display_.name(), area);
  letProgramCatchUp();
  older.icon();
  EXPECT_TRUE(eventually([&] {
    return screen_.pixel({area.x + 8, 20}) != EmbeddingTray::grey;
  })) << "nothing is drawn";
  input_.clickAt(area.centre(), 1, InputDriver::Button::right);
  EXPECT_TRUE(eventually([&] { return menusOnScreen().size() == 1; }));
  input_.type(keyUp);
  input_.type(keyReturn);
  expectProgramToEnd();
}

/// Managers differ in what they let a program do that a person has not just clicked into.
class TrayClick : public Tray, public ::testing::WithParamInterface<WindowManager> {
 protected:
  TrayClick() : Tray({.windowManager = GetParam()}) {}
};
VISTREL_WITH_EACH_MANAGER(TrayClick);

TEST_P(TrayClick, ShowsThePickerWithTheKeyboardWhereverItWas) {
  const TrayItem icon = startInTray(0);
  // A person works in another program.
  const auto other = openSource({.area = {400, 400, 500, 400}});
  const auto workInOther = [&] {
    activate(other->id());
    input_.moveTo({600, 600});
    EXPECT_TRUE(eventually(
        [&] { return pointerOn(connection_).topLevel == topLevelOf(connection_, other->id()); }));
    const int before = other->pressedButtons();
    input_.click();
    // Else a manager that comes to the click later raises the other window above the picker.
    EXPECT_TRUE(eventually([&] { return other->pressedButtons() > before; }));
    input_.type('a');
    EXPECT_TRUE(eventually([&] { return activeWindow() == other->id(); }));
  };
  workInOther();
  icon.activate();
  EXPECT_TRUE(pickerComesToTheFront()) << "from behind";
  vistrel_->pickerRows(1);

  const auto second = openSource({.title = "Second"});
  workInOther();
  const PickerOnScreen first = vistrel_->picker();
  connection_.sendToManager(first.id(), "_NET_CLOSE_WINDOW", {0, byPerson});
  EXPECT_TRUE(eventually([&] { return !first.isOnScreen(); }));
  icon.activate();
  EXPECT_TRUE(pickerComesToTheFront()) << "after it was closed";
  vistrel_->pickerRows(2);

  const PickerOnScreen reopened = vistrel_->picker();  // another window
  hideByKey();
  EXPECT_TRUE(eventually([&] { return !reopened.isOnScreen(); }));
  workInOther();
  icon.activate();
  EXPECT_TRUE(pickerComesToTheFront()) << "out of hiding";
}

TEST_F(Tray, WithoutASessionBusThereIsNoneAndTheProgramRuns) {
  ChildProcess program(
      RunningVistrel::command({}, display_.environmentOnBus("unix:path=/nowhere")));
  const auto hasPicker = [&] {
    const auto windows = windowsOfProcess(connection_, program.pid());
    return std::ranges::any_of(windows, [&](xcb_window_t window) {
      return isViewable(connection_, window) && titleOf(connection_, window) == "Vistrel";
    });
  };
  EXPECT_TRUE(eventually(hasPicker));
  program.sendSignal(SIGTERM);
  const auto ending = program.waitForEnd();
  ASSERT_TRUE(ending.has_value());
  EXPECT_EQ(ending->exitStatus, 0);
  EXPECT_EQ(program.standardError(), "");
}

}  // namespace
}  // namespace vistrel::testbed
