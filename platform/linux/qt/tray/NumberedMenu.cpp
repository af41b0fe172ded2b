#include "platform/linux/qt/tray/NumberedMenu.h"

#include "platform/linux/qt/paint/PlainText.h"

namespace vistrel::platform::linux_desktop {

namespace {

QString labelOf(const MenuItem& item) {
  const QString title = readableBeginning(QString::fromStdString(item.title()));
  return withoutAccessKeys(inOneLine(title));
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

NumberedMenu::NumberedMenu(const Menu& menu, const NumberedMenu& former) : next_(former.next_) {
  topLevel_ = add(menu, former.topLevel_, former);
}

std::vector<int> NumberedMenu::add(const Menu& menu, const std::vector<int>& formerNumbers,
                                   const NumberedMenu& former) {
  std::vector<int> numbers;
  for (const auto& item : menu.items()) {
    const auto index = numbers.size();
    const bool isKept =
        index < formerNumbers.size() && former.item(formerNumbers[index])->title() == item->title();
    const int number = isKept ? formerNumbers[index] : next_++;
    numbers.push_back(number);
    lines_[number].item = item;
    if (item->submenu()) lines_[number].children = add(*item->submenu(), {}, former);
  }
  return numbers;
}

std::shared_ptr<MenuItem> NumberedMenu::item(int number) const {
  const auto found = lines_.find(number);
  return found == lines_.end() ? nullptr : found->second.item;
}

std::optional<MenuLayout> NumberedMenu::layout(int number, int depth,
                                               const QStringList& names) const {
  const bool isMenu = number == 0;
  const auto line = lines_.find(number);
  if (!isMenu && line == lines_.end()) return std::nullopt;
  const QVariantMap properties =
      isMenu ? QVariantMap{{"children-display", "submenu"}} : propertiesOf(*line->second.item);
  MenuLayout layout{number, only(names, properties), {}};
  if (depth == 0) return layout;
  const int depthBelow = depth < 0 ? depth : depth - 1;
  for (const int child : isMenu ? topLevel_ : line->second.children) {
    layout.children.append(*this->layout(child, depthBelow, names));
  }
  return layout;
}

}  // namespace vistrel::platform::linux_desktop
