#pragma once

#include "platform/ScreenCapture.h"

namespace vistrel::platform::linux_desktop {

/// Answers which windows there are, on a thread of its own, so that nobody who waits for the answer
/// can hold it up. Frames are in points by the session's screen layout. Any thread.
class WindowLister {
 public:
  virtual ~WindowLister() = default;

  /// As `platform::getShareableContent`.
  virtual void request(DesktopWindows desktopWindows, ListedWindows listedWindows,
                       ShareableContentCompletion completion) = 0;
};

}  // namespace vistrel::platform::linux_desktop
