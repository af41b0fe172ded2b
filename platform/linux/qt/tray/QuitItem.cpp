#include "platform/linux/qt/tray/QuitItem.h"

#include <QCoreApplication>

namespace vistrel::platform::linux_desktop {

std::shared_ptr<Menu> withQuitItem(const Menu& dockMenu) {
  auto menu = std::make_shared<Menu>(dockMenu.title());
  for (const auto& item : dockMenu.items()) menu->addItem(item);
  menu->addItem(MenuItem::separatorItem());
  menu->addItem(
      std::make_shared<MenuItem>("Quit " + QCoreApplication::applicationName().toStdString(),
                                 Action::upResponderChain("terminate:"), ""));
  return menu;
}

}  // namespace vistrel::platform::linux_desktop
