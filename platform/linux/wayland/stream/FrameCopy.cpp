#include "platform/linux/wayland/stream/FrameCopy.h"

#include <cstddef>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>
#include <utility>

#include "platform/linux/wayland/stream/TileDifferences.h"

namespace vistrel::platform::linux_desktop {
namespace {

constexpr int bytesPerPixel = 4;

}  // namespace

/// Its memory, which others may map as they map a stream's.
class FrameCopy::Room {
 public:
  /// Null where there is no memory.
  static std::unique_ptr<Room> make(std::size_t bytes) {
    const int file = memfd_create("vistrel-frame", MFD_CLOEXEC | MFD_ALLOW_SEALING);
    if (file < 0) return nullptr;
    const bool isMade = ftruncate(file, static_cast<off_t>(bytes)) == 0 &&
                        fcntl(file, F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW) == 0;
    auto readable = isMade ? SharedMemory::map(file, bytes) : nullptr;
    void* const mapped =
        readable ? mmap(nullptr, bytes, PROT_WRITE, MAP_SHARED, file, 0) : MAP_FAILED;
    close(file);
    if (mapped == MAP_FAILED) return nullptr;
    return std::unique_ptr<Room>(new Room(static_cast<std::uint8_t*>(mapped), std::move(readable)));
  }
  Room(const Room&) = delete;
  Room& operator=(const Room&) = delete;
  ~Room() { munmap(bytes_, readable_->size()); }

  std::uint8_t* bytes() { return bytes_; }
  const std::shared_ptr<const SharedMemory>& readable() const { return readable_; }

 private:
  Room(std::uint8_t* bytes, std::shared_ptr<const SharedMemory> readable)
      : bytes_(bytes), readable_(std::move(readable)) {}

  std::uint8_t* const bytes_;
  const std::shared_ptr<const SharedMemory> readable_;
};

FrameCopy::FrameCopy() = default;

FrameCopy::~FrameCopy() = default;

std::optional<StreamFrame> FrameCopy::update(const StreamFrame& frame) {
  const auto size = frame.size();
  const int stride = size.width * bytesPerPixel;
  if (size != size_) {
    if (!makeRoomFor(size)) return std::nullopt;
    write(frame, rectOf(size));
  } else {
    for (const auto& each :
         differingTiles({room_->bytes(), stride}, {frame.pixels(), frame.layout.stride}, size)) {
      write(frame, each);
    }
  }
  const FrameLayout layout{.stride = stride, .size = size, .crop = rectOf(size)};
  return StreamFrame{room_->readable(), layout, frame.place, frame.isFirst};
}

bool FrameCopy::makeRoomFor(PixelSize size) {
  changes_.clear();
  room_ = Room::make(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height) *
                     bytesPerPixel);
  size_ = room_ ? size : PixelSize{};
  return room_ != nullptr;
}

void FrameCopy::write(const StreamFrame& frame, const PixelRect& area) {
  const std::ptrdiff_t stride = std::ptrdiff_t{size_.width} * bytesPerPixel;
  const auto rowBytes = static_cast<std::size_t>(area.width) * bytesPerPixel;
  const std::ptrdiff_t left = std::ptrdiff_t{area.x} * bytesPerPixel;
  for (std::ptrdiff_t y = area.y; y < area.y + area.height; ++y) {
    std::memcpy(room_->bytes() + y * stride + left, frame.pixels() + y * frame.layout.stride + left,
                rowBytes);
  }
  changes_.add(area);
}

}  // namespace vistrel::platform::linux_desktop
