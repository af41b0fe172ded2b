#include "platform/linux/x11/stream/WindowFrames.h"

#include "platform/linux/x11/stream/Capture.h"

namespace vistrel::platform::linux_desktop {

std::shared_ptr<Capture> WindowPixelBuffer::reachableCapture() const {
  auto capture = capture_.lock();
  return capture && capture->picture()->size() == size_ ? capture : nullptr;
}

bool WindowPixelBuffer::visitSampleGrid(int rows, int columns,
                                        const std::function<bool(PixelBGRA)>& visit) const {
  const auto capture = reachableCapture();
  return capture && capture->visitSampleGrid(rows, columns, visit);
}

std::shared_ptr<const Image> WindowPixelBuffer::commit() const {
  const auto capture = reachableCapture();
  return capture ? capture->commit() : nullptr;
}

std::shared_ptr<const Image> WindowImageContext::createImage(
    const std::shared_ptr<const PixelBuffer>& buffer) {
  const auto window = std::dynamic_pointer_cast<const WindowPixelBuffer>(buffer);
  return window ? window->commit() : nullptr;
}

}  // namespace vistrel::platform::linux_desktop
