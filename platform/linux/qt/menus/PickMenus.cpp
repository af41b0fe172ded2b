#include "platform/linux/qt/menus/PickMenus.h"

#include <QTimer>
#include <utility>

namespace vistrel::platform::linux_desktop {

namespace {

/// By which the program itself tells its lists of windows from other menus.
constexpr auto listTitle = "Mirror Window";

/// Follows a list of windows.
class ListWithEntry : public Menu, public MenuDelegate, public MenuPeer {
 public:
  ListWithEntry(std::shared_ptr<Menu> list, std::shared_ptr<PickEntry> entry)
      : Menu(list->title()), list_(std::move(list)), entry_(std::move(entry)) {
    changed_.setSingleShot(true);
    QObject::connect(&changed_, &QTimer::timeout, &changed_, [this] { refill(); });
    entry_->follow(changed_, [this] { refill(); });
  }

  void menuNeedsUpdate(Menu& /*menu*/) override {
    list_->update();
    refill();
  }

  /// Of the list: once for all the changes of one filling, so that the entry never goes.
  void itemsDidChange() override { changed_.start(); }

  void refill() {
    changed_.stop();
    removeAllItems();
    for (const auto& item : list_->items()) addItem(item);
    if (!items().empty()) addItem(MenuItem::separatorItem());
    addItem(entry_->item());
  }

 private:
  const std::shared_ptr<Menu> list_;
  const std::shared_ptr<PickEntry> entry_;
  QTimer changed_;  // runs out at the next turn of the event loop
};

std::shared_ptr<Menu> listWithEntry(const std::shared_ptr<Menu>& list,
                                    const std::shared_ptr<PickEntry>& entry) {
  auto menu = std::make_shared<ListWithEntry>(list, entry);
  menu->setDelegate(menu);
  list->setPeer(menu);
  menu->refill();
  return menu;
}

}  // namespace

std::shared_ptr<Menu> withPickEntry(const std::shared_ptr<Menu>& menu,
                                    const std::shared_ptr<PickEntry>& entry) {
  if (!entry) return menu;
  if (menu->title() == listTitle) return listWithEntry(menu, entry);
  auto changed = std::make_shared<Menu>(menu->title());
  bool isChanged = false;
  for (const auto& item : menu->items()) {
    const auto submenu = item->submenu() ? withPickEntry(item->submenu(), entry) : nullptr;
    if (submenu == item->submenu()) {
      changed->addItem(item);
      continue;
    }
    auto door = std::make_shared<MenuItem>(*item);
    door->setSubmenu(submenu);
    changed->addItem(std::move(door));
    isChanged = true;
  }
  return isChanged ? changed : menu;
}

}  // namespace vistrel::platform::linux_desktop
