#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <string>

#include "platform/linux/qt/tray/NumberedMenu.h"

namespace vistrel::platform::linux_desktop {
namespace {

using testing::ElementsAre;

/// Titles; one that ends in ">" opens a submenu with the line "inner".
std::shared_ptr<Menu> menuOf(const std::vector<std::string>& titles) {
  auto menu = std::make_shared<Menu>("");
  for (const std::string& title : titles) {
    auto item = std::make_shared<MenuItem>(title, Action(), "");
    if (title.ends_with('>')) item->setSubmenu(menuOf({"inner"}));
    menu->addItem(item);
  }
  return menu;
}

MenuLayout wholeOf(const NumberedMenu& menu) { return menu.layout(0, -1, {}).value(); }

std::vector<int> numbersOf(const MenuLayout& layout) {
  std::vector<int> numbers;
  for (const MenuLayout& line : layout.children) {
    numbers.push_back(line.number);
    for (const MenuLayout& inner : line.children) numbers.push_back(inner.number);
  }
  return numbers;
}

QVariantMap onlyLineOf(const std::shared_ptr<MenuItem>& item) {
  Menu menu("");
  menu.addItem(item);
  return wholeOf(NumberedMenu(menu, {})).children.at(0).properties;
}

QString labelOf(const std::string& title) {
  return onlyLineOf(menuOf({title})->items().front())["label"].toString();
}

TEST(NumberedMenuTest, DescribesEachKindOfLine) {
  EXPECT_EQ(onlyLineOf(MenuItem::separatorItem()), (QVariantMap{{"type", "separator"}}));
  const auto item = std::make_shared<MenuItem>("a", Action(), "");
  EXPECT_EQ(onlyLineOf(item), (QVariantMap{{"label", "a"}}));
  item->setEnabled(false);
  EXPECT_EQ(onlyLineOf(item), (QVariantMap{{"label", "a"}, {"enabled", false}}));
  item->setEnabled(true);
  item->setState(MenuItemState::on);
  EXPECT_EQ(onlyLineOf(item),
            (QVariantMap{{"label", "a"}, {"toggle-type", "checkmark"}, {"toggle-state", 1}}));
  item->setState(MenuItemState::off);
  item->setSubmenu(menuOf({"b"}));
  EXPECT_EQ(onlyLineOf(item), (QVariantMap{{"label", "a"}, {"children-display", "submenu"}}));
}

TEST(NumberedMenuTest, TitlesArriveAsTheyAre) {
  EXPECT_EQ(labelOf("Save & &Close"), "Save & &Close");
  EXPECT_EQ(labelOf("_a__b"), "__a____b") << "one underscore would be a mnemonic's";
  EXPECT_EQ(labelOf("a\tb\nc"), "a\u2003b c");
  EXPECT_EQ(labelOf(""), "");
  EXPECT_LT(labelOf(std::string(1'000'000, 'W')).size(), 3000);
}

TEST(NumberedMenuTest, IsReadAsDeepAsAskedFor) {
  const NumberedMenu menu(*menuOf({"a", "b>"}), {});
  EXPECT_THAT(numbersOf(wholeOf(menu)), ElementsAre(1, 2, 3));
  EXPECT_TRUE(menu.layout(0, 0, {})->children.isEmpty());
  EXPECT_THAT(numbersOf(menu.layout(0, 1, {}).value()), ElementsAre(1, 2));
  EXPECT_THAT(numbersOf(menu.layout(2, -1, {}).value()), ElementsAre(3));
  constexpr int lowest = std::numeric_limits<int>::min();
  EXPECT_THAT(numbersOf(menu.layout(0, lowest, {}).value()), ElementsAre(1, 2, 3));
  EXPECT_EQ(menu.layout(4, -1, {}).has_value(), false);
  EXPECT_EQ(menu.layout(-1, -1, {}).has_value(), false);
}

TEST(NumberedMenuTest, HasThePropertiesThatAreAskedFor) {
  const NumberedMenu menu(*menuOf({"b>"}), {});
  EXPECT_EQ(menu.layout(1, 0, {"label", "visible"})->properties, (QVariantMap{{"label", "b>"}}));
}

TEST(NumberedMenuTest, LinesOfTheMenuThatStayKeepTheirNumbersAndOthersGetNewOnes) {
  const NumberedMenu first(*menuOf({"a", "b>"}), {});
  const auto longer = menuOf({"a", "b>", "c"});
  const NumberedMenu second(*longer, first);
  EXPECT_THAT(numbersOf(wholeOf(second)), ElementsAre(1, 2, 4, 5));
  EXPECT_EQ(second.item(1), longer->items().front());
  EXPECT_EQ(second.item(3), nullptr) << "what a host may still show is no other line now";
  const NumberedMenu third(*menuOf({"c", "b>"}), second);
  EXPECT_THAT(numbersOf(wholeOf(third)), ElementsAre(6, 2, 7));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
