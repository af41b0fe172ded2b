#pragma once

#include <memory>

#include "platform/Menu.h"
#include "platform/linux/qt/menus/PickEntry.h"

namespace vistrel::platform::linux_desktop {

/// The menu, where each list of windows to be mirrored, be it the menu itself or below it, goes on
/// with a separator and `entry`, also when it is filled anew; the very menu if there is no such
/// list or the entry is null.
std::shared_ptr<Menu> withPickEntry(const std::shared_ptr<Menu>& menu,
                                    const std::shared_ptr<PickEntry>& entry);

}  // namespace vistrel::platform::linux_desktop
