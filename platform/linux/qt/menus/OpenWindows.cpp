#include "platform/linux/qt/menus/OpenWindows.h"

#include <utility>

namespace vistrel::platform::linux_desktop {

namespace {

/// Keeps and fills the menu that lists the windows.
class WindowLister : public Menu, public MenuDelegate {
 public:
  WindowLister(std::shared_ptr<Menu> menu, const OpenWindows& windows)
      : Menu(menu->title()), original_(std::move(menu)), windows_(windows) {}

  void menuNeedsUpdate(Menu& menu) override {
    menu.removeAllItems();
    for (const auto& item : original_->items()) menu.addItem(item);
    const auto windows = windows_.openWindows();
    if (!windows.empty()) menu.addItem(MenuItem::separatorItem());
    for (const auto& window : windows) menu.addItem(itemFor(window));
  }

 private:
  std::shared_ptr<MenuItem> itemFor(const std::shared_ptr<Window>& window) const {
    auto item = std::make_shared<MenuItem>(
        window->title(),
        Action("makeKeyAndOrderFront:", std::weak_ptr(window), &Window::makeKeyAndOrderFront), "");
    if (window.get() == windows_.keyWindow()) item->setState(MenuItemState::on);
    return item;
  }

  const std::shared_ptr<Menu> original_;
  const OpenWindows& windows_;
};

}  // namespace

std::shared_ptr<Menu> withOpenWindows(std::shared_ptr<Menu> menu, const OpenWindows& windows) {
  auto lister = std::make_shared<WindowLister>(std::move(menu), windows);
  lister->setDelegate(lister);
  lister->update();
  return lister;
}

}  // namespace vistrel::platform::linux_desktop
