#include "platform/linux/wayland/stream/FrameCopies.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>
#include <utility>

namespace vistrel::platform::linux_desktop {
namespace {

constexpr int bytesPerPixel = 4;

}  // namespace

/// Room for one copy, which others may map as they map a stream's memory.
class FrameCopies::Room {
 public:
  /// Null where there is no memory.
  static std::shared_ptr<Room> make(std::size_t bytes) {
    const int file = memfd_create("vistrel-frame", MFD_CLOEXEC | MFD_ALLOW_SEALING);
    if (file < 0) return nullptr;
    const bool isMade = ftruncate(file, static_cast<off_t>(bytes)) == 0 &&
                        fcntl(file, F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW) == 0;
    auto readable = isMade ? SharedMemory::map(file, bytes) : nullptr;
    void* const mapped =
        readable ? mmap(nullptr, bytes, PROT_WRITE, MAP_SHARED, file, 0) : MAP_FAILED;
    close(file);
    if (mapped == MAP_FAILED) return nullptr;
    return std::shared_ptr<Room>(new Room(static_cast<std::uint8_t*>(mapped), std::move(readable)));
  }
  Room(const Room&) = delete;
  Room& operator=(const Room&) = delete;
  ~Room() { munmap(bytes_, readable_->size()); }

  std::size_t size() const { return readable_->size(); }
  std::uint8_t* bytes() { return bytes_; }
  const std::shared_ptr<const SharedMemory>& readable() const { return readable_; }

 private:
  Room(std::uint8_t* bytes, std::shared_ptr<const SharedMemory> readable)
      : bytes_(bytes), readable_(std::move(readable)) {}

  std::uint8_t* const bytes_;
  const std::shared_ptr<const SharedMemory> readable_;
};

FrameCopies::FrameCopies() = default;

FrameCopies::~FrameCopies() = default;

std::shared_ptr<const StreamFrame> FrameCopies::copyOf(const StreamFrame& frame) {
  const auto [width, height] = frame.size();
  const auto rowBytes = static_cast<std::size_t>(width) * bytesPerPixel;
  const auto bytes = rowBytes * static_cast<std::size_t>(height);
  // Those of another size are not needed any more once their copies are not.
  std::erase_if(rooms_,
                [&](const auto& each) { return each.use_count() == 1 && each->size() != bytes; });
  auto room = std::find_if(rooms_.begin(), rooms_.end(),
                           [](const auto& each) { return each.use_count() == 1; });
  if (room == rooms_.end()) {
    auto made = Room::make(bytes);
    if (!made) return nullptr;
    room = rooms_.insert(room, std::move(made));
  }
  for (int y = 0; y < height; ++y) {
    std::memcpy((*room)->bytes() + static_cast<std::size_t>(y) * rowBytes,
                frame.pixels() + std::ptrdiff_t{y} * frame.layout.stride, rowBytes);
  }
  const FrameLayout layout{
      .stride = width * bytesPerPixel, .size = frame.size(), .crop = rectOf(frame.size())};
  // A copy holds its room.
  return {new StreamFrame{(*room)->readable(), layout, frame.place, frame.isFirst},
          [held = *room](const StreamFrame* copy) { delete copy; }};
}

}  // namespace vistrel::platform::linux_desktop
