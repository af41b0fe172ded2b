#pragma once

#include <memory>

#include "platform/Image.h"
#include "platform/ScreenCapture.h"

namespace vistrel::platform::linux_desktop {

/// Captures windows. What each must do is said in ScreenCapture.h and Image.h.
class WindowStreams {
 public:
  virtual ~WindowStreams() = default;

  /// Whether windows can be captured at all; nobody is asked for it. Main thread.
  virtual bool isCaptureOffered() = 0;
  virtual std::shared_ptr<Stream> makeStream(const ContentFilter& filter,
                                             const StreamConfiguration& configuration,
                                             std::weak_ptr<StreamDelegate> delegate) = 0;
  /// Of images that a `PanelSurface` of the session can show.
  virtual std::shared_ptr<ImageContext> makeImageContext(const ImageContextOptions& options) = 0;
};

}  // namespace vistrel::platform::linux_desktop
