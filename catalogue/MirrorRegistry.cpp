#include <cassert>
#include <utility>

#include "catalogue/WindowMirrorManager.h"

namespace vistrel {

const std::shared_ptr<WindowMirrorManager>& WindowMirrorManager::shared() {
  static const auto& manager = *new std::shared_ptr<WindowMirrorManager>(make());
  return manager;
}

std::shared_ptr<WindowMirrorManager> WindowMirrorManager::make() {
  return platform::ownedByMain(new WindowMirrorManager());
}

void WindowMirrorManager::mirror(const platform::WindowRecord& window) {
  assert(platform::mainQueue().isCurrent());
  const auto open = mirrors_.find(window->windowID);
  if (open != mirrors_.end()) return open->second->bringForward();
  const int cascade = static_cast<int>(mirrors_.size());
  auto controller = WindowMirrorHUDController::make(
      window, cascade,
      [weak = weak_from_this()](platform::WindowID windowID) {
        if (const auto self = weak.lock()) self->mirrors_.erase(windowID);
      },
      weak_from_this());
  mirrors_[window->windowID] = controller;
  controller->show();
}

void WindowMirrorManager::closeAll() {
  assert(platform::mainQueue().isCurrent());
  // Closing calls out, and what it reaches may open mirrors and close them.
  const Mirrors closing = std::exchange(mirrors_, {});
  for (const auto& [windowID, controller] : closing) controller->close();
}

void WindowMirrorManager::hideAllAction() { closeAll(); }

void WindowMirrorManager::focusFromMenu(const platform::MenuItem& sender) {
  const auto controller =
      std::dynamic_pointer_cast<WindowMirrorHUDController>(sender.representedObject());
  if (controller) controller->bringForward();
}

}  // namespace vistrel
