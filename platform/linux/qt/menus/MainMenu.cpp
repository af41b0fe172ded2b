#include "platform/linux/qt/menus/MainMenu.h"

#include <QCoreApplication>
#include <QShortcut>
#include <cassert>

#include "platform/linux/CurrentThread.h"
#include "platform/linux/qt/menus/PickMenus.h"
#include "platform/linux/qt/menus/ShownMenu.h"
#include "platform/linux/qt/paint/Fonts.h"
#include "platform/linux/qt/paint/PlainText.h"

namespace vistrel::platform::linux_desktop {

namespace {

/// The application's own menu has no title; desktops call it by the program's name.
QString titleOf(const MenuItem& item) {
  if (item.title().empty()) return QCoreApplication::applicationName();
  return withoutMnemonics(item.title());
}

/// The titles have no mnemonics: F10 leads to the menus, as in other programs of the desktop.
void openByKey(QMenuBar& bar) {
  auto* const key = new QShortcut(Qt::Key_F10, &bar);
  QObject::connect(key, &QShortcut::activated, &bar,
                   [&bar] { bar.setActiveAction(bar.actions().first()); });
}

int measuredBarHeight(const Menu& menu) {
  QMenuBar bar;
  bar.setFont(menuFont());
  for (const auto& item : menu.items()) bar.addMenu(titleOf(*item));
  return bar.isNativeMenuBar() ? 0 : bar.sizeHint().height();
}

}  // namespace

void MainMenu::setMenu(const std::shared_ptr<Menu>& menu) {
  assert(isMainThread());
  menu_ = menu ? withPickEntry(menu, pickEntry_) : nullptr;
  barHeight_ = menu_ ? measuredBarHeight(*menu_) : 0;
}

void MainMenu::setWindowsMenu(const std::shared_ptr<Menu>& menu) {
  assert(isMainThread());
  windowsMenu_ = menu;
  listingWindowsMenu_ = menu ? withOpenWindows(menu, windows_) : nullptr;
}

void MainMenu::fill(QMenuBar& bar) const {
  assert(isMainThread());
  bar.clear();
  bar.setFont(menuFont());
  if (!menu_) return;
  const auto shower =
      bar.isNativeMenuBar() ? ShownMenu::Shower::desktopsBar : ShownMenu::Shower::program;
  for (const auto& item : menu_->items()) {
    const auto& submenu = item->submenu();
    auto* const menu =
        new ShownMenu(submenu == windowsMenu_ ? listingWindowsMenu_ : submenu, &bar, shower);
    menu->setTitle(titleOf(*item));
    bar.addMenu(menu);
  }
  openByKey(bar);
}

}  // namespace vistrel::platform::linux_desktop
