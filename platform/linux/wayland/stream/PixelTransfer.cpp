#include "platform/linux/wayland/stream/PixelTransfer.h"

#include <algorithm>
#include <fcntl.h>
#include <utility>

namespace vistrel::platform::linux_desktop {
namespace {

constexpr std::uint8_t depth = 24;
constexpr int bytesPerPixel = 4;

/// Whether the server takes memory by descriptors.
bool takesDescriptors(Connection& connection) {
  const auto* const extension = xcb_get_extension_data(connection.xcb(), &xcb_shm_id);
  if (extension == nullptr || extension->present == 0) return false;
  const auto version = replyTo<xcb_shm_query_version_reply>(
      connection.xcb(), xcb_shm_query_version(connection.xcb()));
  return version && (version->major_version > 1 ||
                     (version->major_version == 1 && version->minor_version >= 2));
}

/// Rows of `area` without gaps.
std::vector<std::uint8_t> packed(const StreamFrame& frame, const PixelRect& area) {
  const auto stride = static_cast<std::size_t>(area.width) * bytesPerPixel;
  std::vector<std::uint8_t> result;
  result.reserve(stride * static_cast<std::size_t>(area.height));
  for (int y = area.y; y < area.y + area.height; ++y) {
    const auto* const row = frame.pixels() + std::ptrdiff_t{y} * frame.layout.stride +
                            std::ptrdiff_t{area.x} * bytesPerPixel;
    result.insert(result.end(), row, row + stride);
  }
  return result;
}

}  // namespace

PixelTransfer::PixelTransfer(Connection& connection)
    : connection_(connection), offersSegments_(takesDescriptors(connection)) {}

void PixelTransfer::put(const StreamFrame& frame, const PixelRect& area, const Pixmap& target) {
  const auto segment = segmentOf(frame.memory);
  if (segment == XCB_NONE) {
    const auto pixels = packed(frame, area);
    putRows(connection_, target, depth, area, pixels.data(),
            static_cast<std::size_t>(area.width) * bytesPerPixel);
    return;
  }
  if (!context_) context_ = makeGContext(connection_, target.id());
  const auto& layout = frame.layout;
  const auto from = wireRect(moved(area, layout.crop.x, layout.crop.y));
  const auto to = wireRect(area);
  xcb_shm_put_image(connection_.xcb(), target.id(), context_.id(),
                    static_cast<std::uint16_t>(layout.stride / bytesPerPixel),
                    static_cast<std::uint16_t>(layout.size.height),
                    static_cast<std::uint16_t>(from.x), static_cast<std::uint16_t>(from.y),
                    from.width, from.height, to.x, to.y, depth, XCB_IMAGE_FORMAT_Z_PIXMAP,
                    /*send_event=*/0, segment, static_cast<std::uint32_t>(layout.offset));
}

xcb_shm_seg_t PixelTransfer::segmentOf(const std::shared_ptr<const SharedMemory>& memory) {
  if (!offersSegments_) return XCB_NONE;
  const auto found = std::find_if(attached_.begin(), attached_.end(), [&](const Attached& each) {
    return each.memory.lock() == memory;
  });
  if (found != attached_.end()) return found->segment.id();
  std::erase_if(attached_, [](const Attached& each) { return each.memory.expired(); });
  attached_.push_back({memory, attach(*memory)});
  return attached_.back().segment.id();
}

PixelTransfer::Segment PixelTransfer::attach(const SharedMemory& memory) {
  Segment segment(connection_.xcb());
  // The library closes what it is given.
  const int descriptor = fcntl(memory.descriptor(), F_DUPFD_CLOEXEC, 0);
  const auto attached = xcb_shm_attach_fd_checked(connection_.xcb(), segment.id(), descriptor,
                                                  /*read_only=*/1);
  if (descriptor < 0 || failureOf(connection_.xcb(), attached)) segment.abandon();
  return segment;
}

}  // namespace vistrel::platform::linux_desktop
