#include <memory>
#include <string>
#include <utility>

#include "app/AppDelegate.h"
#include "catalogue/WindowMirrorManager.h"

namespace vistrel {

using platform::Action;
using platform::Menu;
using platform::MenuItem;

namespace {

void addItem(Menu& menu, std::string title, Action action, std::string keyEquivalent = "") {
  menu.addItem(
      std::make_shared<MenuItem>(std::move(title), std::move(action), std::move(keyEquivalent)));
}

void addSubmenu(Menu& menu, std::string title, std::shared_ptr<Menu> submenu) {
  auto item = std::make_shared<MenuItem>(std::move(title), Action(), "");
  item->setSubmenu(std::move(submenu));
  menu.addItem(std::move(item));
}

/// A menu that the manager fills each time it opens.
std::shared_ptr<Menu> managersMenu(std::string title) {
  auto menu = std::make_shared<Menu>(std::move(title));
  menu->setDelegate(WindowMirrorManager::shared());
  return menu;
}

void addHideAllItem(Menu& menu) {
  addItem(menu, "Hide All Mirrors",
          {"hideAllAction", std::weak_ptr(WindowMirrorManager::shared()),
           &WindowMirrorManager::hideAllAction});
}

std::shared_ptr<Menu> makeWindowMenu() {
  auto menu = std::make_shared<Menu>("Window");
  addItem(*menu, "Minimize", Action::upResponderChain("performMiniaturize:"), "m");
  addItem(*menu, "Close", Action::upResponderChain("performClose:"), "w");
  return menu;
}

}  // namespace

void AppDelegate::buildMainMenu() {
  auto menu = std::make_shared<Menu>("");
  addSubmenu(*menu, "", makeApplicationMenu());
  addSubmenu(*menu, "Mirror", makeMirrorMenu());
  const auto windowMenu = makeWindowMenu();
  addSubmenu(*menu, "Window", windowMenu);
  auto& application = platform::Application::shared();
  application.setMainMenu(menu);
  application.setWindowsMenu(windowMenu);
}

std::shared_ptr<Menu> AppDelegate::makeApplicationMenu() {
  auto menu = std::make_shared<Menu>("");
  addItem(*menu, "About Vistrel", {"showAbout", weak_from_this(), &AppDelegate::showAbout});
  menu->addItem(MenuItem::separatorItem());
  addItem(*menu, "Hide Vistrel", Action::upResponderChain("hide:"), "h");
  addItem(*menu, "Quit Vistrel", Action::upResponderChain("terminate:"), "q");
  return menu;
}

std::shared_ptr<Menu> AppDelegate::makeMirrorMenu() {
  auto menu = std::make_shared<Menu>("Mirror");
  addItem(*menu, "Window Picker…", {"showPicker", weak_from_this(), &AppDelegate::showPicker}, "n");
  addSubmenu(*menu, "Mirror Window", managersMenu("Mirror Window"));
  addSubmenu(*menu, "Focus Mirror", managersMenu("Focus Window Mirror"));
  menu->addItem(MenuItem::separatorItem());
  addHideAllItem(*menu);
  return menu;
}

std::shared_ptr<Menu> AppDelegate::applicationDockMenu() {
  auto menu = std::make_shared<Menu>("");
  addItem(*menu, "Window Picker…", {"showPicker", weak_from_this(), &AppDelegate::showPicker});
  addSubmenu(*menu, "Mirror a Window", WindowMirrorManager::shared()->makeDockPickerMenu());
  if (!WindowMirrorManager::shared()->mirrors().empty()) addHideAllItem(*menu);
  return menu;
}

}  // namespace vistrel
