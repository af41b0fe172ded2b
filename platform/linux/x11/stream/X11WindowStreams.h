#pragma once

#include <memory>
#include <utility>

#include "platform/linux/session/WindowStreams.h"
#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// Captures windows of the display server, each on the queue that its samples are delivered on.
class X11WindowStreams final : public WindowStreams {
 public:
  explicit X11WindowStreams(std::shared_ptr<Connection> connection)
      : connection_(std::move(connection)) {}

  bool isCaptureOffered() override;
  std::shared_ptr<Stream> makeStream(const ContentFilter& filter,
                                     const StreamConfiguration& configuration,
                                     std::weak_ptr<StreamDelegate> delegate) override;
  std::shared_ptr<ImageContext> makeImageContext(const ImageContextOptions& options) override;

 private:
  const std::shared_ptr<Connection> connection_;
};

}  // namespace vistrel::platform::linux_desktop
