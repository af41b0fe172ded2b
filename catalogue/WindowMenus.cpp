#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "catalogue/WindowBox.h"
#include "catalogue/WindowMirrorManager.h"
#include "platform/Dispatch.h"
#include "platform/Text.h"

namespace vistrel {

using platform::Action;
using platform::ComparisonResult;
using platform::Menu;
using platform::MenuItem;
using platform::MenuItemState;
using platform::WindowRecord;

namespace {

/// The title by which the menu of open mirrors is told from menus of windows.
constexpr const char* focusMenuTitle = "Focus Window Mirror";

/// How long the menu of the program's icon may keep a person waiting, in seconds.
constexpr double dockMenuPatience = 0.7;

using Controllers = std::vector<std::shared_ptr<WindowMirrorHUDController>>;

Controllers sortedByName(const WindowMirrorManager::Mirrors& mirrors) {
  Controllers controllers;
  for (const auto& [windowID, controller] : mirrors) controllers.push_back(controller);
  std::stable_sort(controllers.begin(), controllers.end(), [](const auto& a, const auto& b) {
    return platform::localizedCaseInsensitiveCompare(a->displayName(), b->displayName()) ==
           ComparisonResult::ascending;
  });
  return controllers;
}

std::shared_ptr<MenuItem> disabledItem(const std::string& title) {
  auto item = std::make_shared<MenuItem>(title, Action(), "");
  item->setEnabled(false);
  return item;
}

}  // namespace

std::shared_ptr<Menu> WindowMirrorManager::makeDockPickerMenu() {
  auto menu = std::make_shared<Menu>("Mirror Window");
  if (!isScreenCaptureAllowed()) {
    menu->addItem(permissionItem());
    return menu;
  }
  refreshWindowsBlocking(dockMenuPatience);
  populatePicker(*menu, cachedWindows());
  return menu;
}

void WindowMirrorManager::rebuildPicker(Menu& menu) {
  menu.removeAllItems();
  if (!isScreenCaptureAllowed()) return menu.addItem(permissionItem());
  populatePicker(menu, cachedWindows());
  requestWindows(
      [weak = weak_from_this(), menu = menu.shared_from_this()](std::optional<Windows> windows) {
        if (!windows) return;
        platform::mainQueue().async([weak, menu, windows = *std::move(windows)] {
          const auto self = weak.lock();
          if (!self) return;
          self->cachedWindows_.store(windows);
          self->populatePicker(*menu, windows);
        });
      });
}

void WindowMirrorManager::populatePicker(Menu& menu, const Windows& windows) {
  menu.removeAllItems();
  if (windows.empty()) menu.addItem(disabledItem("Looking for windows…"));
  std::optional<std::string> previousName;
  for (const WindowRecord& window : windows) {
    const std::string name = window->applicationNameOr("Unknown");
    if (name != previousName) {
      if (previousName) menu.addItem(MenuItem::separatorItem());
      menu.addItem(disabledItem(name));
      previousName = name;
    }
    menu.addItem(windowItem(window));
  }
}

std::shared_ptr<MenuItem> WindowMirrorManager::windowItem(const WindowRecord& window) {
  auto item = std::make_shared<MenuItem>(
      "  " + window->title.value_or("Untitled"),
      Action("pickFromMenu:", weak_from_this(), &WindowMirrorManager::pickFromMenu), "");
  item->setRepresentedObject(std::make_shared<WindowBox>(window));
  if (mirrors_.contains(window->windowID)) item->setState(MenuItemState::on);
  return item;
}

std::shared_ptr<MenuItem> WindowMirrorManager::permissionItem() {
  return std::make_shared<MenuItem>(
      "Enable Screen Recording to mirror windows…",
      Action("openSettingsFromMenu:", weak_from_this(), &WindowMirrorManager::openSettingsFromMenu),
      "");
}

void WindowMirrorManager::pickFromMenu(const MenuItem& sender) {
  const auto box = std::dynamic_pointer_cast<WindowBox>(sender.representedObject());
  if (box) mirror(box->window);
}

void WindowMirrorManager::openSettingsFromMenu() { openScreenRecordingSettings(); }

void WindowMirrorManager::rebuildFocusMenu(Menu& menu) {
  menu.removeAllItems();
  if (mirrors_.empty()) menu.addItem(disabledItem("No window mirrors open"));
  for (const auto& controller : sortedByName(mirrors_)) {
    auto item = std::make_shared<MenuItem>(
        controller->displayName(),
        Action("focusFromMenu:", weak_from_this(), &WindowMirrorManager::focusFromMenu), "");
    item->setRepresentedObject(controller);
    menu.addItem(std::move(item));
  }
}

void WindowMirrorManager::menuNeedsUpdate(Menu& menu) {
  if (menu.title() == focusMenuTitle) {
    rebuildFocusMenu(menu);
  } else {
    rebuildPicker(menu);
  }
}

}  // namespace vistrel
