#pragma once

#include <memory>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/session/SharedScreenLayout.h"
#include "platform/linux/session/WindowLister.h"

namespace vistrel::platform::linux_desktop {

/// Lists the windows of the display server on a queue and a connection of its own.
class ShareableContentService final : public WindowLister {
 public:
  explicit ShareableContentService(std::shared_ptr<const SharedScreenLayout> layout);

  void request(DesktopWindows desktopWindows, ListedWindows listedWindows,
               ShareableContentCompletion completion) override;

 private:
  const std::shared_ptr<const SharedScreenLayout> layout_;
  const std::shared_ptr<SerialQueue> queue_;
};

}  // namespace vistrel::platform::linux_desktop
