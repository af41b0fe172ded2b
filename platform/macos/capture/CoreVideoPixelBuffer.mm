#include "platform/macos/capture/CoreVideoPixelBuffer.h"

namespace vistrel::platform::macos {

namespace {

/// Keeps a buffer's memory readable.
class ReadLock {
 public:
  explicit ReadLock(CVPixelBufferRef buffer)
      : buffer_(buffer),
        locked_(CVPixelBufferLockBaseAddress(buffer, kCVPixelBufferLock_ReadOnly) ==
                kCVReturnSuccess) {}
  ReadLock(const ReadLock&) = delete;
  ReadLock& operator=(const ReadLock&) = delete;
  ~ReadLock() {
    if (locked_) CVPixelBufferUnlockBaseAddress(buffer_, kCVPixelBufferLock_ReadOnly);
  }

  /// Null when the memory cannot be reached.
  const std::uint8_t* baseAddress() const {
    if (!locked_) return nullptr;
    return static_cast<const std::uint8_t*>(CVPixelBufferGetBaseAddress(buffer_));
  }

 private:
  CVPixelBufferRef buffer_;
  bool locked_;
};

}  // namespace

CoreVideoPixelBuffer::CoreVideoPixelBuffer(CVPixelBufferRef buffer) : buffer_(cfRetained(buffer)) {}

PixelFormat CoreVideoPixelBuffer::pixelFormat() const {
  return CVPixelBufferGetPixelFormatType(buffer());
}

std::int64_t CoreVideoPixelBuffer::width() const {
  return static_cast<std::int64_t>(CVPixelBufferGetWidth(buffer()));
}

std::int64_t CoreVideoPixelBuffer::height() const {
  return static_cast<std::int64_t>(CVPixelBufferGetHeight(buffer()));
}

bool CoreVideoPixelBuffer::visitSampleGrid(int rows, int columns,
                                           const std::function<bool(PixelBGRA)>& visit) const {
  const ReadLock lock(buffer());
  const std::uint8_t* base = lock.baseAddress();
  if (base == nullptr) return false;
  const auto bytesPerRow = static_cast<std::int64_t>(CVPixelBufferGetBytesPerRow(buffer()));
  visitSampleGridInMemory({base, width(), height(), bytesPerRow}, rows, columns, visit);
  return true;
}

}  // namespace vistrel::platform::macos
