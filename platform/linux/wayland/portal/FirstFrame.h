#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/wayland/stream/PipeWireStream.h"
#include "platform/linux/wayland/stream/StreamOffer.h"

namespace vistrel::platform::linux_desktop {

/// Waits for a window's first frame, which tells how large the window is: the portal does not. On
/// its queue only; nothing is told any more once it goes.
class FirstFrame {
 public:
  /// Called once, later: with none where no frame comes in time, or PipeWire cannot be reached.
  using Completion = std::function<void(std::optional<PixelSize> size)>;

  FirstFrame(const std::shared_ptr<SerialQueue>& queue, const PipeWireNode& node,
             Completion completion);
  FirstFrame(const FirstFrame&) = delete;
  FirstFrame& operator=(const FirstFrame&) = delete;

  /// Whether PipeWire has been reached.
  bool isConnected() const { return stream_ != nullptr; }

 private:
  void arrived();
  void complete(std::optional<PixelSize> size);

  const std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
  Completion completion_;
  std::unique_ptr<PipeWireStream> stream_;
};

}  // namespace vistrel::platform::linux_desktop
