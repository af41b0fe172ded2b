#include <memory>
#include <string>

#include "mirror/WindowMirrorHUDController.h"

namespace vistrel {

using platform::Action;
using platform::Menu;
using platform::MenuItem;

namespace {

/// Of the source's size.
constexpr int scalePercentages[] = {25, 50, 75, 100};

}  // namespace

std::shared_ptr<Menu> WindowMirrorHUDController::makeContextMenu() {
  using Self = WindowMirrorHUDController;
  auto menu = std::make_shared<Menu>("");
  const auto add = [&](const char* title, const char* selector, void (Self::*command)()) {
    menu->addItem(
        std::make_shared<MenuItem>(title, Action(selector, weak_from_this(), command), ""));
  };
  add(rolledUp_ ? "Roll Down (Show Mirror)" : "Roll Up (Title Only)", "toggleRollUpMenu",
      &Self::toggleRollUpMenu);
  add("Re-capture (Refresh / Fix Blur or Black)", "recaptureMenu", &Self::recaptureMenu);
  add(keepAwake_ ? "Stop Keeping Source Awake (Restore Window)"
                 : "Keep Source Awake (Park Off-Screen)",
      "toggleKeepAwakeMenu", &Self::toggleKeepAwakeMenu);
  add("Bring Source Window to Front", "activateSource", &Self::activateSource);
  auto scale = std::make_shared<MenuItem>("Scale", Action(), "");
  scale->setSubmenu(makeScaleMenu());
  menu->addItem(std::move(scale));
  menu->addItem(MenuItem::separatorItem());
  add("Hide This Mirror", "closeClicked", &Self::closeClicked);
  const auto host = host_.lock();
  if (host && host->mirrorCount() >= 2) {
    add("Hide All Window Mirrors", "hideAllMenu", &Self::hideAllMenu);
  }
  return menu;
}

std::shared_ptr<Menu> WindowMirrorHUDController::makeScaleMenu() {
  auto menu = std::make_shared<Menu>("Scale");
  for (const int percentage : scalePercentages) {
    auto item = std::make_shared<MenuItem>(
        std::to_string(percentage) + "% of source",
        Action("scaleFromMenu:", weak_from_this(), &WindowMirrorHUDController::scaleFromMenu), "");
    item->setTag(percentage);
    menu->addItem(std::move(item));
  }
  return menu;
}

}  // namespace vistrel
