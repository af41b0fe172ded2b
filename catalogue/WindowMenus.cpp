#include <algorithm>
#include <memory>
#include <vector>

#include "catalogue/WindowMirrorManager.h"
#include "platform/Text.h"

namespace vistrel {

using platform::ComparisonResult;
using platform::Menu;
using platform::MenuItem;

namespace {

/// The title by which the menu of open mirrors is told from menus of windows.
constexpr const char* focusMenuTitle = "Focus Window Mirror";

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

std::shared_ptr<MenuItem> disabledItem(const char* title) {
  auto item = std::make_shared<MenuItem>(title, platform::MenuAction(), "");
  item->setEnabled(false);
  return item;
}

}  // namespace

void WindowMirrorManager::rebuildFocusMenu(Menu& menu) {
  menu.removeAllItems();
  if (mirrors_.empty()) menu.addItem(disabledItem("No window mirrors open"));
  for (const auto& controller : sortedByName(mirrors_)) {
    auto item =
        std::make_shared<MenuItem>(controller->displayName(),
                                   platform::MenuAction("focusFromMenu:", weak_from_this(),
                                                        &WindowMirrorManager::focusFromMenu),
                                   "");
    item->setRepresentedObject(controller);
    menu.addItem(std::move(item));
  }
}

void WindowMirrorManager::menuNeedsUpdate(Menu& menu) {
  if (menu.title() == focusMenuTitle) rebuildFocusMenu(menu);
}

}  // namespace vistrel
