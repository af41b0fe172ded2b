#pragma once

#include <functional>
#include <memory>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/session/WindowLister.h"
#include "platform/linux/wayland/compositor/NativeWindowIds.h"

namespace vistrel::platform::linux_desktop {

/// Lists KWin's native windows among X's, on a queue and a connection of its own; only X's where
/// KWin does not let this program know of others.
class KWinWindowLister final : public WindowLister {
 public:
  /// `activeFullScreenChanged` is called on the lister's queue, from the first list on, when a
  /// window that fills the screen becomes the active one, or is so no more.
  KWinWindowLister(std::unique_ptr<WindowLister> x, std::shared_ptr<NativeWindowIds> ids,
                   std::function<void(bool isActive)> activeFullScreenChanged);

  void request(DesktopWindows desktopWindows, ListedWindows listedWindows,
               ShareableContentCompletion completion) override;

 private:
  const std::unique_ptr<WindowLister> x_;
  const std::shared_ptr<NativeWindowIds> ids_;
  const std::shared_ptr<SerialQueue> queue_;
};

}  // namespace vistrel::platform::linux_desktop
