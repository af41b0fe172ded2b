#pragma once

#import <AppKit/AppKit.h>
#include <memory>

#include "platform/Menu.h"

namespace vistrel::platform::macos {

/// An AppKit menu that shows `menu`, submenus included, and keeps it. Has it filled each time it is
/// about to open, and follows its items, also while it is open. Main thread.
NSMenu* makeMenu(const std::shared_ptr<Menu>& menu);

/// The submenu of `bar` that was made for `menu`; nil when there is none.
NSMenu* submenuShowing(const Menu& menu, NSMenu* bar);

}  // namespace vistrel::platform::macos
