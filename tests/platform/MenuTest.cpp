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
    menu.addItem(std::make_shared<MenuItem>("filled", MenuAction(), ""));
  }
};

TEST(MenuItem, IsEnabledAndStandsForNothingAtFirst) {
  const MenuItem item("Title", MenuAction(), "n");
  EXPECT_TRUE(item.isEnabled());
  EXPECT_EQ(item.keyEquivalent(), "n");
  EXPECT_EQ(item.representedObject(), nullptr);
}

TEST(MenuItem, GivesItselfToItsTarget) {
  const auto chooser = std::make_shared<Chooser>();
  const MenuItem item("One", MenuAction("choose:", std::weak_ptr(chooser), &Chooser::choose), "");
  item.action().send(item);
  EXPECT_EQ(chooser->chosen, std::vector<std::string>{"One"});
  EXPECT_EQ(item.action().selector(), "choose:");
}

TEST(MenuItem, DoesNothingOnceItsTargetIsGone) {
  auto chooser = std::make_shared<Chooser>();
  const MenuItem item("One", MenuAction("choose:", std::weak_ptr(chooser), &Chooser::choose), "");
  chooser.reset();
  item.action().send(item);
  EXPECT_EQ(item.action().target(), nullptr);
}

TEST(Menu, KeepsItsItemsInOrder) {
  Menu menu("Menu");
  menu.addItem(std::make_shared<MenuItem>("a", MenuAction(), ""));
  menu.addItem(std::make_shared<MenuItem>("b", MenuAction(), ""));
  ASSERT_EQ(menu.items().size(), 2U);
  EXPECT_EQ(menu.items()[1]->title(), "b");
  menu.removeAllItems();
  EXPECT_TRUE(menu.items().empty());
}

TEST(Menu, HoldsItsDelegateWeakly) {
  Menu menu("Menu");
  auto delegate = std::make_shared<FillingDelegate>();
  menu.setDelegate(delegate);
  menu.delegate()->menuNeedsUpdate(menu);
  EXPECT_EQ(menu.items().size(), 1U);
  delegate.reset();
  EXPECT_EQ(menu.delegate(), nullptr);
}

}  // namespace
}  // namespace vistrel::platform
