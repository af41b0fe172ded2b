#include <gtest/gtest.h>

#include "catalogue/WindowBox.h"
#include "catalogue/WindowMirrorManager.h"
#include "tests/core/CoreTest.h"

namespace vistrel {
namespace {

using platform::Menu;
using platform::MenuItem;
using platform::MenuItemState;

constexpr const char* lookingText = "Looking for windows…";
constexpr const char* permissionText = "Enable Screen Recording to mirror windows…";

class WindowMenusTest : public CoreTest {
 protected:
  static std::vector<std::string> titlesOf(const Menu& menu) {
    std::vector<std::string> titles;
    for (const auto& item : menu.items()) {
      titles.push_back(item->isSeparatorItem() ? "--" : item->title());
    }
    return titles;
  }
  std::vector<std::string> titles() { return titlesOf(*menu_); }

  std::shared_ptr<WindowMirrorManager> manager_ = WindowMirrorManager::make();
  const std::shared_ptr<Menu> menu_ = std::make_shared<Menu>("Mirror Window");
};

class MainMenuListTest : public WindowMenusTest {
 protected:
  void open() { manager_->menuNeedsUpdate(*menu_); }
};

TEST_F(MainMenuListTest, LooksForWindowsAndShowsThemInPlaceOnceTheyAreKnown) {
  openSource("A", "w1");
  capture().answers().hold(Request::content);
  open();
  ASSERT_THAT(titles(), ElementsAre(lookingText));
  EXPECT_FALSE(menu_->items().front()->isEnabled());
  EXPECT_EQ(menu_->items().front()->action().selector(), "");
  capture().answers().release(Request::content);
  desktop_.turnMainQueue();
  EXPECT_THAT(titles(), ElementsAre("A", "  w1"));
}

TEST_F(MainMenuListTest, ShowsWhatWasLastKnownAtOnce) {
  const auto source = openSource("A", "w1");
  open();
  desktop_.turnMainQueue();
  capture().closeWindow(source->windowID);
  openSource("B", "w2");
  open();
  EXPECT_THAT(titles(), ElementsAre("A", "  w1"));
  desktop_.turnMainQueue();
  EXPECT_THAT(titles(), ElementsAre("B", "  w2"));
  EXPECT_EQ(manager_->cachedWindows().size(), 1U);
}

TEST_F(MainMenuListTest, AsksForWhatIsOnScreenDesktopWindowsIncluded) {
  open();
  EXPECT_THAT(capture().contentRequests(),
              ElementsAre(ContentRequest{DesktopWindows::included, ListedWindows::onScreen}));
}

TEST_F(MainMenuListTest, KeepsWhatItShowsWhenTheServiceFails) {
  openSource("A", "w1");
  open();
  desktop_.turnMainQueue();
  capture().failContent(Error{"no"});
  open();
  desktop_.turnMainQueue();
  EXPECT_THAT(titles(), ElementsAre("A", "  w1"));
  EXPECT_EQ(manager_->cachedWindows().size(), 1U);
}

TEST_F(MainMenuListTest, OffersThePermissionInPlaceOfTheList) {
  openSource();
  capture().setAccess(false, false);
  open();
  ASSERT_THAT(titles(), ElementsAre(permissionText));
  desktop_.turnMainQueue();
  EXPECT_THAT(capture().contentRequests(), IsEmpty());
  const MenuItem& item = *menu_->items().front();
  EXPECT_TRUE(item.isEnabled());
  EXPECT_EQ(item.action().selector(), "openSettingsFromMenu:");
  EXPECT_EQ(item.action().target(), manager_);
  platform::performAction(menu_->items().front());
  EXPECT_THAT(
      desktop_.workspace().openedURLs(),
      ElementsAre("x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture"));
}

TEST_F(MainMenuListTest, ListsWindowsOncePermissionIsGivenOnRequest) {
  openSource("A", "w1");
  capture().setAccess(false, true);
  open();
  EXPECT_EQ(capture().requestCount(), 1);
  desktop_.turnMainQueue();
  EXPECT_THAT(titles(), ElementsAre("A", "  w1"));
}

TEST_F(MainMenuListTest, RequestsNoPermissionThatIsThere) {
  open();
  EXPECT_EQ(capture().requestCount(), 0);
}

TEST_F(MainMenuListTest, ForgetsWhatItShowedOnceThePermissionIsGone) {
  openSource("A", "w1");
  open();
  desktop_.turnMainQueue();
  capture().setAccess(false, false);
  open();
  EXPECT_THAT(titles(), ElementsAre(permissionText));
}

TEST_F(MainMenuListTest, AnAnswerNeedsNeitherTheManagerNorAnOpenMenu) {
  openSource("A", "w1");
  capture().answers().hold(Request::content);
  open();
  manager_.reset();
  desktop_.turnMainQueue();
  capture().answers().release(Request::content);
  desktop_.turnMainQueue();
  EXPECT_THAT(titles(), ElementsAre(lookingText));
}

class DockListTest : public WindowMenusTest {};

TEST_F(DockListTest, IsANewMenuFilledOnTheSpot) {
  openSource("A", "w1");
  const auto menu = manager_->makeDockPickerMenu();
  EXPECT_EQ(menu->title(), "Mirror Window");
  EXPECT_THAT(titlesOf(*menu), ElementsAre("A", "  w1"));
  EXPECT_NE(manager_->makeDockPickerMenu(), menu);
}

TEST_F(DockListTest, WaitsSevenTenthsOfASecondAtMost) {
  openSource("A", "w1");
  capture().answers().hold(Request::content);
  const auto before = platform::now();
  EXPECT_THAT(titlesOf(*manager_->makeDockPickerMenu()), ElementsAre(lookingText));
  EXPECT_NEAR(platform::now().timeIntervalSince(before), 0.7, 1e-6);
  capture().answers().release(Request::content);
  desktop_.turnMainQueue();
  capture().answers().hold(Request::content);
  EXPECT_THAT(titlesOf(*manager_->makeDockPickerMenu()), ElementsAre("A", "  w1"))
      << "what came too late is there the next time";
  capture().answers().release(Request::content);
}

TEST_F(DockListTest, OffersThePermissionWithoutWaiting) {
  capture().setAccess(false, false);
  const auto before = platform::now();
  EXPECT_THAT(titlesOf(*manager_->makeDockPickerMenu()), ElementsAre(permissionText));
  EXPECT_EQ(platform::now(), before);
  EXPECT_THAT(capture().contentRequests(), IsEmpty());
}

TEST_F(DockListTest, ListsWindowsOncePermissionIsGivenOnRequest) {
  openSource("A", "w1");
  capture().setAccess(false, true);
  EXPECT_THAT(titlesOf(*manager_->makeDockPickerMenu()), ElementsAre("A", "  w1"));
  EXPECT_EQ(capture().requestCount(), 1);
}

TEST_F(DockListTest, RequestsNoPermissionThatIsThere) {
  manager_->makeDockPickerMenu();
  EXPECT_EQ(capture().requestCount(), 0);
}

class FillingTest : public WindowMenusTest {
 protected:
  void fill(const std::vector<WindowRecord>& windows) { manager_->populatePicker(*menu_, windows); }
};

TEST_F(FillingTest, GroupsWindowsByApplication) {
  fill({openSource("A", "w1"), openSource("A", "w2"), openSource("B", "w3")});
  EXPECT_THAT(titles(), ElementsAre("A", "  w1", "  w2", "--", "B", "  w3"));
  for (const std::size_t header : {0U, 4U}) {
    EXPECT_FALSE(menu_->items()[header]->isEnabled());
    EXPECT_EQ(menu_->items()[header]->action().selector(), "");
    EXPECT_EQ(menu_->items()[header]->representedObject(), nullptr);
  }
}

TEST_F(FillingTest, StartsAGroupWheneverTheNameChanges) {
  fill({openSource("Foo", "a"), openSource("foo", "b"), openSource("Foo", "c")});
  EXPECT_THAT(titles(), ElementsAre("Foo", "  a", "--", "foo", "  b", "--", "Foo", "  c"));
}

TEST_F(FillingTest, HeadsWindowsOfNoApplicationUnknown) {
  const auto homeless =
      openSource([](ShareableWindow& window) { window.owningApplication.reset(); });
  const auto nameless = openSource("", "n");
  fill({homeless, openSource("Unknown", "u"), nameless});
  EXPECT_THAT(titles(), ElementsAre("Unknown", "  Title", "  u", "--", "", "  n"));
}

TEST_F(FillingTest, CallsWindowsWithoutATitleUntitledButKeepsAnEmptyOne) {
  fill({openSource([](ShareableWindow& window) { window.title.reset(); }),
        openSource([](ShareableWindow& window) { window.title = ""; })});
  EXPECT_THAT(titles(), ElementsAre("App", "  Untitled", "  "));
}

TEST_F(FillingTest, TakesTitlesAsTheyAre) {
  const std::string title = "&File_\t\n\xD7\xA9 🙂";
  fill({openSource("A & B", title)});
  EXPECT_THAT(titles(), ElementsAre("A & B", "  " + title));
}

TEST_F(FillingTest, AWindowItemStandsForItsWindow) {
  const auto source = openSource();
  fill({source});
  const MenuItem& item = *menu_->items().at(1);
  EXPECT_TRUE(item.isEnabled());
  EXPECT_EQ(item.keyEquivalent(), "");
  EXPECT_EQ(item.action().selector(), "pickFromMenu:");
  EXPECT_EQ(item.action().target(), manager_);
  const auto box = std::dynamic_pointer_cast<WindowBox>(item.representedObject());
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(box->window, source);
}

TEST_F(FillingTest, MarksWindowsThatHaveAMirror) {
  const auto first = openSource();
  const auto second = openSource();
  manager_->mirror(second);
  fill({first, second});
  EXPECT_EQ(menu_->items().at(1)->state(), MenuItemState::off);
  EXPECT_EQ(menu_->items().at(2)->state(), MenuItemState::on);
}

TEST_F(FillingTest, ChoosingAWindowMirrorsItOrBringsItsMirrorForward) {
  const auto source = openSource();
  fill({source});
  platform::performAction(menu_->items().at(1));
  ASSERT_EQ(manager_->mirrors().size(), 1U);
  manager_->mirrors().begin()->second->toggleRollUp();
  platform::performAction(menu_->items().at(1));
  ASSERT_EQ(manager_->mirrors().size(), 1U);
  EXPECT_FALSE(inside(*manager_->mirrors().begin()->second).rolledUp());
}

TEST_F(FillingTest, ChoosingAWindowThatHasVanishedOpensAMirrorThatSaysSo) {
  const auto source = openSource();
  fill({source});
  capture().closeWindow(source->windowID);
  platform::performAction(menu_->items().at(1));
  desktop_.turnMainQueue();
  ASSERT_EQ(manager_->mirrors().size(), 1U);
  EXPECT_EQ(partsOf(*manager_->mirrors().begin()->second).statusLabel->stringValue(),
            "Source window is no longer available.");
}

TEST_F(FillingTest, ChoosingAHeaderDoesNothing) {
  fill({openSource()});
  platform::performAction(menu_->items().front());
  EXPECT_THAT(manager_->mirrors(), IsEmpty());
}

TEST_F(FillingTest, IgnoresItemsThatStandForNothingOrSomethingElse) {
  MenuItem item("x", {}, "");
  manager_->pickFromMenu(item);
  item.setRepresentedObject(std::make_shared<platform::RepresentedObject>());
  manager_->pickFromMenu(item);
  EXPECT_THAT(manager_->mirrors(), IsEmpty());
}

}  // namespace
}  // namespace vistrel
