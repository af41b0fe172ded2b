#include "platform/linux/wayland/portal/FirstFrame.h"

#include <utility>

#include "platform/linux/wayland/stream/ShadowMargins.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// In seconds; frames take 20 to 60 ms.
constexpr double patience = 2;

}  // namespace

FirstFrame::FirstFrame(const std::shared_ptr<SerialQueue>& queue, const PipeWireNode& node,
                       Completion completion)
    : completion_(std::move(completion)) {
  stream_ = PipeWireStream::connect(queue, node, std::make_shared<FrameCopy>(),
                                    [this, alive = std::weak_ptr(alive_)] {
                                      if (alive.lock()) arrived();
                                    });
  queue->asyncAt(monotonicNow() + (stream_ ? patience : 0), [this, alive = std::weak_ptr(alive_)] {
    if (alive.lock()) complete(std::nullopt);
  });
}

void FirstFrame::arrived() {
  const auto frame = stream_->takeFrame();
  if (!frame && !stream_->hasEnded()) return;
  if (!frame) return complete(std::nullopt);
  complete(
      sizeOf(ShadowMargins().windowIn({frame->pixels(), frame->layout.stride}, frame->size())));
}

void FirstFrame::complete(std::optional<PixelSize> size) {
  // It may destroy this.
  if (const auto completion = std::exchange(completion_, nullptr)) completion(size);
}

}  // namespace vistrel::platform::linux_desktop
