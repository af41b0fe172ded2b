#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <vector>

#include "platform/linux/wayland/stream/PixelTransfer.h"
#include "tests/support/FileDescriptor.h"
#include "tests/support/PrivateDisplay.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// A frame of 100 × 60, of which 70 × 40 at 20, 10 is the window, in memory that begins with other
/// things. Each pixel has its place as its colour.
class Frame {
 public:
  static constexpr int offset = 4096;
  static constexpr int stride = 416;
  static constexpr PixelSize size{100, 60};
  static constexpr PixelRect crop{20, 10, 70, 40};

  Frame() {
    std::vector<std::uint32_t> pixels(offset / 4 + stride / 4 * size.height);
    for (int y = 0; y < size.height; ++y) {
      for (int x = 0; x < size.width; ++x) {
        pixels.at(static_cast<std::size_t>(offset / 4 + y * stride / 4 + x)) = colourAt(x, y);
      }
    }
    const std::size_t bytes = pixels.size() * sizeof(pixels.front());
    const testbed::FileDescriptor file(memfd_create("frame", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    EXPECT_EQ(write(file.get(), pixels.data(), bytes), static_cast<ssize_t>(bytes));
    EXPECT_EQ(fcntl(file.get(), F_ADD_SEALS, F_SEAL_SHRINK), 0);
    frame_ = {SharedMemory::map(file.get(), bytes), {offset, stride, size, crop}};
  }

  static std::uint32_t colourAt(int x, int y) {
    return static_cast<std::uint32_t>(x << 16 | y << 8 | 0x80);
  }
  const StreamFrame& get() const { return frame_; }

 private:
  StreamFrame frame_;
};

/// What stands in a pixmap of the crop's size after `area` of the frame was put into it.
std::vector<std::uint32_t> pixelsAfterPutting(const PixelRect& area,
                                              const std::vector<std::string>& serverArguments) {
  const testbed::PrivateDisplay display{
      {.windowManager = testbed::WindowManager::none, .serverArguments = serverArguments}};
  display.adoptEnvironment();
  const auto connection = Connection::open();
  const auto canvas = makeOpaqueCanvas(*connection, sizeOf(Frame::crop)).value();
  fill(*connection, canvas.picture, Color::black(1), rectOf(canvas.size));
  const Frame frame;
  PixelTransfer(*connection).put(frame.get(), area, canvas.pixmap);
  const auto image = replyTo<xcb_get_image_reply>(
      connection->xcb(),
      xcb_get_image(connection->xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, canvas.pixmap.id(), 0, 0,
                    Frame::crop.width, Frame::crop.height, 0x00ffffff));
  if (!image) return {};
  const auto* const pixels =
      reinterpret_cast<const std::uint32_t*>(xcb_get_image_data(image.get()));
  std::vector<std::uint32_t> result(pixels, pixels + xcb_get_image_data_length(image.get()) / 4);
  for (auto& each : result) each &= 0x00ffffff;
  return result;
}

std::vector<std::uint32_t> expectedWith(const PixelRect& area) {
  std::vector<std::uint32_t> result;
  for (int y = 0; y < Frame::crop.height; ++y) {
    for (int x = 0; x < Frame::crop.width; ++x) {
      const bool isPut = contains(area, {x, y, 1, 1});
      result.push_back(isPut ? Frame::colourAt(Frame::crop.x + x, Frame::crop.y + y) : 0);
    }
  }
  return result;
}

TEST(PixelTransfer, PutsAPartOfTheCropOutOfTheStreamsMemory) {
  constexpr PixelRect part{30, 5, 40, 35};
  EXPECT_EQ(pixelsAfterPutting(part, {}), expectedWith(part));
}

TEST(PixelTransfer, SendsThePixelsWhereTheServerDoesNotShareMemory) {
  constexpr PixelRect part{30, 5, 40, 35};
  EXPECT_EQ(pixelsAfterPutting(part, {"-extension", "MIT-SHM"}), expectedWith(part));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
