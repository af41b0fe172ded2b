#pragma once

#include <memory>
#include <utility>

#include "platform/linux/session/WindowStreams.h"
#include "platform/linux/x11/server/Connection.h"
#include "platform/linux/x11/source/CaptureSource.h"

namespace vistrel::platform::linux_desktop {

/// Captures windows into pictures of the display server, each on the queue that its samples are
/// delivered on.
class X11WindowStreams final : public WindowStreams {
 public:
  X11WindowStreams(std::shared_ptr<Connection> connection, OpenSource open)
      : connection_(std::move(connection)), open_(std::move(open)) {}

  bool isCaptureOffered() override;
  std::shared_ptr<Stream> makeStream(const ContentFilter& filter,
                                     const StreamConfiguration& configuration,
                                     std::weak_ptr<StreamDelegate> delegate) override;
  std::shared_ptr<ImageContext> makeImageContext(const ImageContextOptions& options) override;

 private:
  const std::shared_ptr<Connection> connection_;
  const OpenSource open_;
};

}  // namespace vistrel::platform::linux_desktop
