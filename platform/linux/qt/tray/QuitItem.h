#pragma once

#include <memory>

#include "platform/Menu.h"

namespace vistrel::platform::linux_desktop {

/// The menu's lines, and below them the one that quits the program: a dock adds it to the menus
/// that programs give it, so no such menu has one of its own. Main thread.
std::shared_ptr<Menu> withQuitItem(const Menu& dockMenu);

}  // namespace vistrel::platform::linux_desktop
