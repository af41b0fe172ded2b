#include <gtest/gtest.h>

#include "platform/Menu.h"

namespace vistrel::platform {
namespace {

struct Chooser {
  std::vector<std::string> chosen;
  void choose(const MenuItem& sender) { chosen.push_back(sender.title()); }
};

struct FillingDelegate : MenuDelegate {
  void menuNeedsUpdate(Menu& menu) override {
    menu.removeAllItems();
    menu.addItem(std::make_shared<MenuItem>("filled", Action(), ""));
  }
};

/// Counts what it is told.
struct CountingPeer : MenuPeer {
  int changes = 0;
  void itemsDidChange() override { ++changes; }
};

std::shared_ptr<MenuItem> plainItem(const std::string& title) {
  return std::make_shared<MenuItem>(title, Action(), "");
}

std::shared_ptr<MenuItem> itemFor(const std::shared_ptr<Chooser>& chooser) {
  return std::make_shared<MenuItem>(
      "One", Action("choose:", std::weak_ptr(chooser), &Chooser::choose), "");
}

TEST(MenuItem, IsEnabledAndStandsForNothingAtFirst) {
  const MenuItem item("Title", Action(), "n");
  EXPECT_TRUE(item.isEnabled());
  EXPECT_EQ(item.keyEquivalent(), "n");
  EXPECT_EQ(item.representedObject(), nullptr);
  EXPECT_EQ(item.submenu(), nullptr);
  EXPECT_EQ(item.state(), MenuItemState::off);
  EXPECT_EQ(item.tag(), 0);
  EXPECT_FALSE(item.isSeparatorItem());
}

TEST(MenuItem, ASeparatorCannotBeChosen) {
  const auto separator = MenuItem::separatorItem();
  EXPECT_TRUE(separator->isSeparatorItem());
  EXPECT_FALSE(separator->isEnabled());
  EXPECT_EQ(separator->title(), "");
}

TEST(MenuItem, GivesItselfToItsTarget) {
  const auto chooser = std::make_shared<Chooser>();
  const auto item = itemFor(chooser);
  performAction(item);
  EXPECT_EQ(chooser->chosen, std::vector<std::string>{"One"});
  EXPECT_EQ(item->action().selector(), "choose:");
}

TEST(MenuItem, DoesNothingWhileItIsDisabled) {
  const auto chooser = std::make_shared<Chooser>();
  const auto item = itemFor(chooser);
  item->setEnabled(false);
  performAction(item);
  EXPECT_TRUE(chooser->chosen.empty());
}

TEST(MenuItem, DoesNothingOnceItsTargetIsGone) {
  auto chooser = std::make_shared<Chooser>();
  const auto item = itemFor(chooser);
  chooser.reset();
  performAction(item);
  EXPECT_EQ(item->action().target(), nullptr);
}

/// Has one command, which drops both the menu that it is in and its target.
struct Dropper {
  std::shared_ptr<Dropper> self;
  std::shared_ptr<Menu> menu;
  int calls = 0;
  void drop() {
    menu.reset();
    self.reset();
    ++calls;
  }
};

TEST(MenuItem, MayDropItsMenuAndItsTargetWhileItRuns) {
  const auto dropper = std::make_shared<Dropper>();
  const std::weak_ptr<Dropper> weak = dropper;
  dropper->self = dropper;
  dropper->menu = std::make_shared<Menu>("Menu");
  dropper->menu->addItem(
      std::make_shared<MenuItem>("Drop", Action("drop", weak, &Dropper::drop), ""));
  performAction(dropper->menu->items().front());
  EXPECT_EQ(dropper->calls, 1);
  EXPECT_EQ(dropper->menu, nullptr);
}

TEST(Menu, KeepsItsItemsInOrder) {
  Menu menu("Menu");
  menu.addItem(plainItem("a"));
  menu.addItem(plainItem("b"));
  ASSERT_EQ(menu.items().size(), 2U);
  EXPECT_EQ(menu.items()[1]->title(), "b");
  menu.removeAllItems();
  EXPECT_TRUE(menu.items().empty());
}

TEST(Menu, HoldsItsDelegateWeaklyAndAsksItBeforeItOpens) {
  Menu menu("Menu");
  auto delegate = std::make_shared<FillingDelegate>();
  menu.setDelegate(delegate);
  menu.update();
  EXPECT_EQ(menu.items().size(), 1U);
  delegate.reset();
  EXPECT_EQ(menu.delegate(), nullptr);
  menu.update();
  EXPECT_EQ(menu.items().size(), 1U);
}

TEST(Menu, TellsItsPeerThatItemsCameOrWent) {
  Menu menu("Menu");
  auto peer = std::make_shared<CountingPeer>();
  menu.setPeer(peer);
  menu.addItem(plainItem("a"));
  menu.removeAllItems();
  EXPECT_EQ(peer->changes, 2);
  peer.reset();
  menu.addItem(plainItem("b"));
  EXPECT_EQ(menu.items().size(), 1U);
}

}  // namespace
}  // namespace vistrel::platform
