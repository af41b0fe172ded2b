#include <cstring>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/mman.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "platform/linux/wayland/stream/FrameCopy.h"

namespace vistrel::platform::linux_desktop {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::uint32_t grey = 0x808080;

/// A stream's picture, grey, of which a part is the window.
class Picture {
 public:
  explicit Picture(PixelSize size, PixelRect crop) : size_(size), crop_(crop) {
    pixels_.assign(static_cast<std::size_t>(size.width * size.height), grey);
  }
  explicit Picture(PixelSize size) : Picture(size, rectOf(size)) {}

  void set(int x, int y, std::uint32_t pixel) {
    pixels_.at(static_cast<std::size_t>(y * size_.width + x)) = pixel;
  }
  /// In memory as somebody shares it.
  StreamFrame frame() const {
    const std::size_t bytes = pixels_.size() * sizeof(pixels_.front());
    const int file = memfd_create("frame", MFD_CLOEXEC | MFD_ALLOW_SEALING);
    EXPECT_EQ(write(file, pixels_.data(), bytes), static_cast<ssize_t>(bytes));
    EXPECT_EQ(fcntl(file, F_ADD_SEALS, F_SEAL_SHRINK), 0);
    auto memory = SharedMemory::map(file, bytes);
    close(file);
    return {std::move(memory), {0, size_.width * 4, size_, crop_}, crop_, true};
  }

 private:
  PixelSize size_;
  PixelRect crop_;
  std::vector<std::uint32_t> pixels_;
};

std::uint32_t pixelOf(const StreamFrame& frame, int x, int y) {
  std::uint32_t pixel = 0;
  std::memcpy(&pixel, frame.pixels() + std::ptrdiff_t{y} * frame.layout.stride + 4 * x, 4);
  return pixel;
}

constexpr PixelSize size{200, 130};

TEST(FrameCopy, HasThePixelsOfTheWindowAlone) {
  Picture picture(size, {50, 20, 100, 60});
  picture.set(50, 20, 1);
  picture.set(149, 79, 2);
  FrameCopy copy;
  const auto copied = copy.update(picture.frame());
  ASSERT_TRUE(copied);
  EXPECT_EQ(copied->size(), (PixelSize{100, 60}));
  EXPECT_EQ(copied->place, (PixelRect{50, 20, 100, 60}));
  EXPECT_TRUE(copied->isFirst);
  EXPECT_EQ(pixelOf(*copied, 0, 0), 1U);
  EXPECT_EQ(pixelOf(*copied, 99, 59), 2U);
  EXPECT_EQ(pixelOf(*copied, 50, 30), grey);
  EXPECT_THAT(copy.changes().rects(), ElementsAre(PixelRect{0, 0, 100, 60}));
}

TEST(FrameCopy, TellsTheTilesThatHaveChangedUntilTheyAreForgotten) {
  Picture picture(size);
  FrameCopy copy;
  ASSERT_TRUE(copy.update(picture.frame()));
  copy.forgetChanges();
  ASSERT_TRUE(copy.update(picture.frame()));
  EXPECT_THAT(copy.changes().rects(), IsEmpty());
  picture.set(70, 10, 1);
  ASSERT_TRUE(copy.update(picture.frame()));
  picture.set(199, 129, 2);
  const auto copied = copy.update(picture.frame());
  EXPECT_THAT(copy.changes().rects(),
              ElementsAre(PixelRect{64, 0, 64, 64}, PixelRect{192, 128, 8, 2}));
  EXPECT_EQ(pixelOf(*copied, 70, 10), 1U);
  EXPECT_EQ(pixelOf(*copied, 199, 129), 2U);
}

TEST(FrameCopy, IsNewWhereTheWindowHasAnotherSize) {
  FrameCopy copy;
  const auto former = copy.update(Picture(size).frame());
  copy.forgetChanges();
  const auto larger = copy.update(Picture({210, 130}).frame());
  EXPECT_EQ(larger->size(), (PixelSize{210, 130}));
  EXPECT_THAT(copy.changes().rects(), ElementsAre(PixelRect{0, 0, 210, 130}));
  EXPECT_NE(larger->memory, former->memory);
  EXPECT_EQ(pixelOf(*former, 199, 129), grey);
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
