#include <algorithm>
#include <gtest/gtest.h>

#include "app/AppDelegate.h"
#include "picker/PickerWindowController.h"
#include "tests/core/CoreTest.h"

namespace vistrel {
namespace {

using platform::Menu;

/// The program's one manager and picker last as long as the process, and so does their desktop;
/// each test finds them as they are before the launch.
class ApplicationTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    if (desktop == nullptr) desktop = new SimulatedBackend();
  }
  ApplicationTest() {
    pickerWindow().orderOut();
    desktop->journal().clear();
  }
  ~ApplicationTest() override {
    WindowMirrorManager::shared()->closeAll();
    desktop->turnMainQueue();
    for (const auto& window : desktop->screenCapture().windows()) {
      desktop->screenCapture().closeWindow(window->windowID);
    }
    desktop->workspace().setBundleInfo(versionKey, std::nullopt);
  }

  static constexpr const char* versionKey = "CFBundleShortVersionString";

  platform::Window& pickerWindow() { return *PickerWindowController::shared()->window(); }
  static void openSource() {
    desktop->screenCapture().openWindow(
        {.title = "Title", .frame = rect(0, 0, 400, 300), .isOnScreen = true});
  }
  /// What was done since the journal was read last.
  static std::vector<std::string> takeJournal() {
    auto calls = desktop->journal().calls();
    desktop->journal().clear();
    return calls;
  }

  static SimulatedBackend* desktop;
  std::shared_ptr<AppDelegate> delegate_ = std::make_shared<AppDelegate>();
};

SimulatedBackend* ApplicationTest::desktop = nullptr;

TEST_F(ApplicationTest, ShowsThePickerAtLaunchAndOnEachClickOnItsIcon) {
  desktop->application().setDelegate(delegate_);
  openSource();
  desktop->application().run();
  EXPECT_TRUE(pickerWindow().isVisible());
  EXPECT_THAT(takeJournal(), ElementsAre("setMainMenu", "Window makeKeyAndOrderFront",
                                         "activateIgnoringOtherApps", "getShareableContent"));
  EXPECT_THAT(desktop->application().activations(), testing::Each(true));
  EXPECT_EQ(PickerWindowController::shared()->windows().size(), 1U);

  pickerWindow().close();
  takeJournal();
  for (const bool hasVisibleWindows : {false, true}) {
    EXPECT_TRUE(desktop->application().clickIcon(hasVisibleWindows));
    EXPECT_TRUE(pickerWindow().isVisible());
    EXPECT_THAT(takeJournal(), ElementsAre("Window makeKeyAndOrderFront",
                                           "activateIgnoringOtherApps", "getShareableContent"));
  }
  EXPECT_EQ(desktop->windows().windowsFrontToBack().size(), 1U);
}

TEST_F(ApplicationTest, MirrorsWhatAPersonPicksInADialogOfTheDesktopsAndListsIt) {
  desktop->application().setDelegate(delegate_);
  openSource();
  const WindowRecord picked = desktop->screenCapture().windows().front();
  desktop->application().pickWindow(picked);
  desktop->turnMainQueue();
  EXPECT_TRUE(WindowMirrorManager::shared()->mirrors().contains(picked->windowID));
  const auto row = PickerWindowController::shared()->tableView()->cellForRow(0);
  EXPECT_EQ(dynamic_cast<platform::TableCellView&>(*row).textField()->stringValue(),
            "● Unknown — Title");
}

/// One line of a menu, as it was asked for.
struct Line {
  std::string title;
  std::string action;
  std::string key;
  std::shared_ptr<const void> target;

  friend bool operator==(const Line&, const Line&) = default;
};

std::vector<Line> linesOf(const Menu& menu) {
  std::vector<Line> lines;
  for (const auto& item : menu.items()) {
    lines.push_back({item->isSeparatorItem() ? "--" : item->title(), item->action().selector(),
                     item->keyEquivalent(), item->action().target()});
  }
  return lines;
}

class MenusTest : public ApplicationTest {
 protected:
  MenusTest() {
    desktop->application().setDelegate(delegate_);
    desktop->application().run();
  }
  const Menu& mainMenu() { return *desktop->application().mainMenu(); }
  std::shared_ptr<Menu> menuAt(std::size_t index) {
    return mainMenu().items().at(index)->submenu();
  }

  const std::shared_ptr<WindowMirrorManager>& manager_ = WindowMirrorManager::shared();
};

TEST_F(MenusTest, TheBarHoldsThreeMenus) {
  EXPECT_THAT(linesOf(mainMenu()),
              ElementsAre(Line{}, Line{.title = "Mirror"}, Line{.title = "Window"}));
  EXPECT_EQ(menuAt(0)->title(), "");
  EXPECT_EQ(menuAt(1)->title(), "Mirror");
  EXPECT_EQ(menuAt(2)->title(), "Window");
  EXPECT_EQ(desktop->application().windowsMenu(), menuAt(2));
}

TEST_F(MenusTest, TheApplicationsMenuHidesAndQuits) {
  EXPECT_THAT(linesOf(*menuAt(0)),
              ElementsAre(Line{"About Vistrel", "showAbout", "", delegate_}, Line{.title = "--"},
                          Line{"Hide Vistrel", "hide:", "h", nullptr},
                          Line{"Quit Vistrel", "terminate:", "q", nullptr}));
  const int hidden = desktop->application().hideCount();
  platform::performAction(menuAt(0)->items().at(2));
  EXPECT_EQ(desktop->application().hideCount(), hidden + 1);
  const int terminated = desktop->application().terminateCount();
  platform::performAction(menuAt(0)->items().at(3));
  EXPECT_EQ(desktop->application().terminateCount(), terminated + 1);
}

TEST_F(MenusTest, TheMirrorMenuLeadsToWindowsAndMirrors) {
  EXPECT_THAT(
      linesOf(*menuAt(1)),
      ElementsAre(Line{"Window Picker…", "showPicker", "n", delegate_},
                  Line{.title = "Mirror Window"}, Line{.title = "Focus Mirror"},
                  Line{.title = "--"}, Line{"Hide All Mirrors", "hideAllAction", "", manager_}));
  const auto windows = menuAt(1)->items().at(1)->submenu();
  const auto mirrors = menuAt(1)->items().at(2)->submenu();
  EXPECT_EQ(windows->title(), "Mirror Window");
  EXPECT_EQ(mirrors->title(), "Focus Window Mirror");
  EXPECT_EQ(windows->delegate(), manager_);
  EXPECT_EQ(mirrors->delegate(), manager_);
  mirrors->update();
  EXPECT_EQ(mirrors->items().front()->title(), "No window mirrors open");
}

TEST_F(MenusTest, TheWindowMenuGoesToTheKeyWindow) {
  EXPECT_THAT(linesOf(*menuAt(2)),
              ElementsAre(Line{"Minimize", "performMiniaturize:", "m", nullptr},
                          Line{"Close", "performClose:", "w", nullptr}));
  const auto history = desktop->windows().historyOf(pickerWindow());
  const int before = history->count(PeerCall::Kind::miniaturize);
  platform::performAction(menuAt(2)->items().at(0));
  EXPECT_EQ(history->count(PeerCall::Kind::miniaturize), before + 1);
  pickerWindow().makeKeyAndOrderFront();
  platform::performAction(menuAt(2)->items().at(1));
  EXPECT_FALSE(pickerWindow().isVisible());
  platform::performAction(menuAt(2)->items().at(0));
  EXPECT_EQ(history->count(PeerCall::Kind::miniaturize), before + 1) << "no window is left";
}

TEST_F(MenusTest, ThePickerIsShownAndReloadedByItsItem) {
  pickerWindow().close();
  takeJournal();
  platform::performAction(menuAt(1)->items().at(0));
  EXPECT_TRUE(pickerWindow().isVisible());
  EXPECT_THAT(takeJournal(), ElementsAre("Window makeKeyAndOrderFront", "activateIgnoringOtherApps",
                                         "getShareableContent"));
}

TEST_F(MenusTest, TheIconsMenuIsMadeAnewAndOffersToHideMirrorsWhileThereAreAny) {
  openSource();
  const auto menu = desktop->application().openDockMenu();
  EXPECT_THAT(linesOf(*menu), ElementsAre(Line{"Window Picker…", "showPicker", "", delegate_},
                                          Line{.title = "Mirror a Window"}));
  const auto windows = menu->items().at(1)->submenu();
  EXPECT_EQ(windows->title(), "Mirror Window");
  ASSERT_GE(windows->items().size(), 2U);
  platform::performAction(windows->items().at(1));
  const auto longer = desktop->application().openDockMenu();
  EXPECT_NE(longer, menu);
  ASSERT_EQ(longer->items().size(), 3U);
  EXPECT_EQ(linesOf(*longer).back(), (Line{"Hide All Mirrors", "hideAllAction", "", manager_}));
  platform::performAction(longer->items().back());
  EXPECT_THAT(manager_->mirrors(), IsEmpty());
}

TEST_F(MenusTest, AboutTellsTheVersionOfTheBundle) {
  platform::performAction(menuAt(0)->items().front());
  platform::Alert alert = desktop->windows().alerts().back();
  EXPECT_EQ(alert.messageText, "Vistrel 1.0.0") << "the bundle carries no version";
  EXPECT_TRUE(alert.informativeText.starts_with(
      "Live-mirror any on-screen window into a floating, always-on-top panel.\n\n"));
  EXPECT_EQ(std::count(alert.informativeText.begin(), alert.informativeText.end(), '\n'), 2);
  EXPECT_THAT(alert.buttonTitles, ElementsAre("OK"));
  desktop->workspace().setBundleInfo(versionKey, "2.5");
  platform::performAction(menuAt(0)->items().front());
  EXPECT_EQ(desktop->windows().alerts().back().messageText, "Vistrel 2.5");
}

TEST_F(ApplicationTest, KnowsNoOtherCommands) {
  EXPECT_FALSE(platform::Application::shared().sendAction("paste:"));
}

TEST_F(ApplicationTest, HasOneManagerWhichItsPickerUses) {
  EXPECT_EQ(WindowMirrorManager::shared(), WindowMirrorManager::shared());
  const auto& picker = PickerWindowController::shared();
  EXPECT_EQ(picker, PickerWindowController::shared());
  openSource();
  picker->reload();
  desktop->turnMainQueue();
  picker->tableView()->personDidSelectRow(0);
  picker->mirrorSelected();
  EXPECT_EQ(WindowMirrorManager::shared()->mirrors().size(), 1U);
}

}  // namespace
}  // namespace vistrel
