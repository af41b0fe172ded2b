#pragma once

#include <memory>

#include "platform/ScreenCapture.h"
#include "platform/linux/ScreenLayout.h"
#include "platform/linux/SerialQueue.h"

namespace vistrel::platform::linux_desktop {

/// Lists windows on a thread and a connection of its own, so that nobody who waits for the answer
/// can hold it up. Any thread.
class ShareableContentService {
 public:
  ShareableContentService();

  /// By which the frames of windows are given in points.
  void setScreenLayout(ScreenLayout layout);
  /// As `platform::getShareableContent`.
  void request(DesktopWindows desktopWindows, ListedWindows listedWindows,
               ShareableContentCompletion completion);

 private:
  std::shared_ptr<SerialQueue> queue_;
};

}  // namespace vistrel::platform::linux_desktop
