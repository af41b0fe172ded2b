#include "platform/linux/qt/NumberedMenu.h"

#include "platform/linux/qt/PlainText.h"

namespace vistrel::platform::linux_desktop {

namespace {

/// A single underscore would mark a mnemonic.
QString labelOf(const MenuItem& item) {
  const QString title = readableBeginning(QString::fromStdString(item.title()));
  return inOneLine(title).replace(QLatin1Char('_'), QLatin1String("__"));
}

/// Those that are not as the protocol has them by default.
QVariantMap propertiesOf(const MenuItem& item) {
  if (item.isSeparatorItem()) return {{"type", "separator"}};
  QVariantMap properties{{"label", labelOf(item)}};
  if (!item.isEnabled()) properties["enabled"] = false;
  if (item.submenu()) properties["children-display"] = "submenu";
  if (item.state() == MenuItemState::on) {
    properties["toggle-type"] = "checkmark";
    properties["toggle-state"] = 1;
  }
  return properties;
}

QVariantMap only(const QStringList& names, QVariantMap properties) {
  if (names.isEmpty()) return properties;
  properties.removeIf([&](const auto& property) { return !names.contains(property.key()); });
  return properties;
}

}  // namespace

NumberedMenu::NumberedMenu(const Menu& menu, int first) : first_(first), topLevel_(add(menu)) {}

std::vector<int> NumberedMenu::add(const Menu& menu) {
  std::vector<int> numbers;
  for (const auto& item : menu.items()) {
    const auto index = lines_.size();
    numbers.push_back(end());
    lines_.push_back({item, {}});
    if (item->submenu()) lines_[index].children = add(*item->submenu());
  }
  return numbers;
}

std::optional<MenuLayout> NumberedMenu::layout(int number, int depth,
                                               const QStringList& names) const {
  const bool isMenu = number == 0;
  if (!isMenu && !contains(number)) return std::nullopt;
  const QVariantMap properties =
      isMenu ? QVariantMap{{"children-display", "submenu"}} : propertiesOf(*item(number));
  MenuLayout layout{number, only(names, properties), {}};
  if (depth == 0) return layout;
  for (const int child : isMenu ? topLevel_ : line(number).children) {
    layout.children.append(*this->layout(child, depth - 1, names));
  }
  return layout;
}

}  // namespace vistrel::platform::linux_desktop
