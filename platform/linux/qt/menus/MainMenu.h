#pragma once

#include <QMenuBar>
#include <memory>
#include <utility>

#include "platform/Menu.h"
#include "platform/linux/qt/menus/OpenWindows.h"
#include "platform/linux/qt/menus/PickEntry.h"

namespace vistrel::platform::linux_desktop {

/// The program's menus, which each of its ordinary windows carries in a bar; a desktop with a bar
/// of its own shows them there. Main thread.
class MainMenu {
 public:
  /// `windows` outlives it. Lists of windows to be mirrored end with `pickEntry`, if not null.
  MainMenu(const OpenWindows& windows, std::shared_ptr<PickEntry> pickEntry)
      : windows_(windows), pickEntry_(std::move(pickEntry)) {}

  void setMenu(const std::shared_ptr<Menu>& menu);
  /// This one of the menus goes on with the list of open windows.
  void setWindowsMenu(const std::shared_ptr<Menu>& menu);

  void fill(QMenuBar& bar) const;
  /// What a bar takes of a window's height, in points; 0 where the desktop shows the menus.
  int barHeight() const { return barHeight_; }

 private:
  const OpenWindows& windows_;
  const std::shared_ptr<PickEntry> pickEntry_;
  std::shared_ptr<Menu> menu_;
  std::shared_ptr<Menu> windowsMenu_;
  std::shared_ptr<Menu> listingWindowsMenu_;
  int barHeight_ = 0;
};

}  // namespace vistrel::platform::linux_desktop
