#include <QApplication>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/qt/menus/PickMenus.h"
#include "platform/linux/qt/menus/ShownMenu.h"
#include "platform/linux/qt/tray/NumberedMenu.h"
#include "tests/linux/qt/OffscreenQt.h"
#include "tests/linux/qt/TestPicking.h"

namespace vistrel::platform::linux_desktop {
namespace {

using testing::ElementsAre;

using Titles = std::vector<std::string>;

void fill(Menu& menu, const Titles& titles) {
  menu.removeAllItems();
  for (const std::string& title : titles) {
    menu.addItem(std::make_shared<MenuItem>(title, Action(), ""));
  }
}

std::shared_ptr<Menu> menuOf(const std::string& title, const Titles& titles) {
  auto menu = std::make_shared<Menu>(title);
  fill(*menu, titles);
  return menu;
}

std::shared_ptr<MenuItem> doorTo(const std::shared_ptr<Menu>& submenu) {
  auto item = std::make_shared<MenuItem>("Door", Action(), "");
  item->setSubmenu(submenu);
  return item;
}

Titles titlesOf(const Menu& menu) {
  Titles titles;
  for (const auto& item : menu.items()) {
    titles.push_back(item->isSeparatorItem() ? "--" : item->title());
  }
  return titles;
}

Titles textsOf(const QMenu& shown) {
  Titles texts;
  for (const QAction* line : shown.actions()) {
    texts.push_back(line->isSeparator() ? "--" : line->text().toStdString());
  }
  return texts;
}

/// Fills a menu with the same each time.
struct Filler : MenuDelegate {
  void menuNeedsUpdate(Menu& menu) override { fill(menu, {"Filled"}); }
};

class PickMenusTest : public testing::Test {
 protected:
  PickMenusTest() {
    OffscreenQt::start();
    entry_ = PickEntry::make(picking_);
    entry_->setCallbacks({.parent = [] { return 0U; }, .picked = [](const WindowRecord&) {}});
  }
  std::shared_ptr<Menu> listWithEntry() { return withPickEntry(list_, entry_); }
  static void turnEventLoop() {
    for (int i = 0; i < 4; ++i) QCoreApplication::processEvents();
  }

  static constexpr auto last = PickEntry::title;

  TestPicking picking_;
  std::shared_ptr<PickEntry> entry_;
  const std::shared_ptr<Menu> list_ = menuOf("Mirror Window", {"One", "Two"});
};

TEST_F(PickMenusTest, LeaveMenusAsTheyAreWhereNothingCanBePicked) {
  EXPECT_EQ(withPickEntry(list_, nullptr), list_);
  EXPECT_THAT(titlesOf(*list_), ElementsAre("One", "Two"));
}

TEST_F(PickMenusTest, LeaveMenusOfOtherThingsAsTheyAre) {
  const auto menu = menuOf("Window", {"Close"});
  menu->addItem(doorTo(menuOf("Focus Window Mirror", {"One"})));
  EXPECT_EQ(withPickEntry(menu, entry_), menu);
}

TEST_F(PickMenusTest, EndAListWithTheEntry) {
  EXPECT_THAT(titlesOf(*listWithEntry()), ElementsAre("One", "Two", "--", last));
  EXPECT_THAT(titlesOf(*list_), ElementsAre("One", "Two"));
  EXPECT_THAT(titlesOf(*withPickEntry(menuOf("Mirror Window", {}), entry_)), ElementsAre(last));
}

TEST_F(PickMenusTest, EndAListWithTheEntryHoweverDeepItLies) {
  const auto mirror = menuOf("Mirror", {"Window Picker…"});
  mirror->addItem(doorTo(list_));
  mirror->addItem(MenuItem::separatorItem());
  const auto bar = menuOf("", {});
  bar->addItem(doorTo(menuOf("", {"Quit"})));
  bar->addItem(doorTo(mirror));
  const auto changed = withPickEntry(bar, entry_);
  EXPECT_EQ(changed->items().at(0), bar->items().at(0));
  const auto& changedMirror = *changed->items().at(1)->submenu();
  EXPECT_THAT(titlesOf(changedMirror), ElementsAre("Window Picker…", "Door", "--"));
  EXPECT_THAT(titlesOf(*changedMirror.items().at(1)->submenu()),
              ElementsAre("One", "Two", "--", last));
}

TEST_F(PickMenusTest, HaveAListFilledByItsOwnDelegateEachTimeItOpens) {
  const auto filler = std::make_shared<Filler>();
  list_->setDelegate(filler);
  const auto menu = listWithEntry();
  menu->update();
  EXPECT_THAT(titlesOf(*menu), ElementsAre("Filled", "--", last));
}

TEST_F(PickMenusTest, KeepTheEntryLastWhenAnOpenListIsFilledAnew) {
  ShownMenu shown(listWithEntry());
  shown.popup({10, 10});
  shown.setActiveAction(shown.actions().back());
  fill(*list_, {"One", "Two", "Three"});
  turnEventLoop();
  EXPECT_THAT(textsOf(shown), ElementsAre("One", "Two", "Three", "--", last));
  EXPECT_EQ(shown.activeAction(), shown.actions().back()) << "what was pointed at still is";
}

TEST_F(PickMenusTest, LeaveTheEntrysLineAloneWhereAnOpenListStaysAsLong) {
  ShownMenu shown(listWithEntry());
  shown.popup({10, 10});
  const QAction* const line = shown.actions().back();
  fill(*list_, {"One", "Two"});
  turnEventLoop();
  EXPECT_EQ(shown.actions().back(), line);
}

TEST_F(PickMenusTest, FollowTheEntryWhileAListIsOpen) {
  ShownMenu shown(listWithEntry());
  shown.popup({10, 10});
  const QAction* const line = shown.actions().back();
  EXPECT_TRUE(line->isEnabled());
  picking_.become(false, "The service that shows the dialog does not answer.");
  turnEventLoop();
  ASSERT_EQ(shown.actions().back(), line);
  EXPECT_FALSE(line->isEnabled());
}

TEST_F(PickMenusTest, AreReadByATrayLikeAnyOther) {
  picking_.become(false, "");
  const auto menu = menuOf("", {"Window Picker…"});
  menu->addItem(doorTo(list_));
  const NumberedMenu numbered(*withPickEntry(menu, entry_), {});
  const auto lines = numbered.layout(0, -1, {})->children.at(1).children;
  ASSERT_EQ(lines.size(), 4);
  EXPECT_EQ(lines.at(3).properties, (QVariantMap{{"label", last}, {"enabled", false}}));
}

TEST_F(PickMenusTest, OpenTheDialogByTheEntry) {
  performAction(listWithEntry()->items().back());
  EXPECT_EQ(picking_.parents().size(), 1U);
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
