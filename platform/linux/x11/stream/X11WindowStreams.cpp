#include "platform/linux/x11/stream/X11WindowStreams.h"

#include "platform/linux/x11/stream/CaptureStream.h"
#include "platform/linux/x11/stream/WindowFrames.h"

namespace vistrel::platform::linux_desktop {

bool X11WindowStreams::isCaptureOffered() {
  return connection_->extensions().offersCapture && !connection_->isLost();
}

std::shared_ptr<Stream> X11WindowStreams::makeStream(const ContentFilter& filter,
                                                     const StreamConfiguration& configuration,
                                                     std::weak_ptr<StreamDelegate> delegate) {
  const auto& window = filter.desktopIndependentWindow;
  return std::make_shared<CaptureStream>(window ? window->windowID : 0, open_, configuration,
                                         std::move(delegate));
}

std::shared_ptr<ImageContext> X11WindowStreams::makeImageContext(
    const ImageContextOptions& /*options*/) {
  return std::make_shared<WindowImageContext>();
}

}  // namespace vistrel::platform::linux_desktop
