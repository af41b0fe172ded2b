#include "platform/Menu.h"

namespace vistrel::platform {

std::shared_ptr<MenuItem> MenuItem::separatorItem() {
  auto item = std::make_shared<MenuItem>("", Action(), "");
  item->separator_ = true;
  item->enabled_ = false;
  return item;
}

void Menu::addItem(std::shared_ptr<MenuItem> item) {
  items_.push_back(std::move(item));
  itemsDidChange();
}

void Menu::removeAllItems() {
  items_.clear();
  itemsDidChange();
}

void Menu::update() {
  if (const auto delegate = delegate_.lock()) delegate->menuNeedsUpdate(*this);
}

void Menu::itemsDidChange() {
  if (const auto peer = peer_.lock()) peer->itemsDidChange();
}

void performAction(const std::shared_ptr<MenuItem>& item) {
  // What the action does may drop the one reference that `item` stands for.
  const auto chosen = item;  // NOLINT(performance-unnecessary-copy-initialization)
  if (chosen->isEnabled()) chosen->action().send(chosen.get());
}

}  // namespace vistrel::platform
