#include "tests/support/KWinScreen.h"

#include <cerrno>
#include <cstdint>
#include <stdexcept>
#include <unistd.h>
#include <vector>

#include "tests/support/FileDescriptor.h"

namespace vistrel::testbed {
namespace {

// QImage's formats of 32 bits: blue, green, red in ascending order on this machine.
constexpr std::size_t bytesPerPixel = 4;

std::uint32_t bytesPerLine(BusMessage answer) {
  std::uint32_t stride = 0;
  answer.array("{sv}", [&] {
    answer.structure(
        "sv",
        [&] {
          if (answer.text() == "stride") {
            stride = answer.structure(
                "u", [&] { return answer.number(); }, SD_BUS_TYPE_VARIANT);
          } else {
            answer.skip("v");
          }
          return 0;
        },
        SD_BUS_TYPE_DICT_ENTRY);
  });
  return stride;
}

std::vector<std::uint8_t> readExactly(const FileDescriptor& descriptor, std::size_t size) {
  std::vector<std::uint8_t> bytes(size);
  for (std::size_t have = 0; have < size;) {
    const ssize_t count = ::read(descriptor.get(), bytes.data() + have, size - have);
    if (count == 0 || (count < 0 && errno != EINTR)) {
      throw std::runtime_error("KWin breaks off in a picture of the screen");
    }
    have += count > 0 ? static_cast<std::size_t>(count) : 0;
  }
  return bytes;
}

}  // namespace

KWinScreen::KWinScreen(const XConnection& connection, const std::string& busAddress)
    : ScreenReader(connection), bus_(connectToBus(busAddress)) {
  // A bus gives up on who has not said hello in time, and the first look may be late.
  const char* name = nullptr;
  sd_bus_get_unique_name(bus_.get(), &name);
}

Picture KWinScreen::read(Rect area) const {
  Picture picture(area.width, area.height);
  if (area.width <= 0 || area.height <= 0) {
    return picture;
  }
  Pipe pipe = Pipe::open();
  const std::uint32_t stride =
      bytesPerLine(BusObject(bus_, "org.kde.KWin", "/org/kde/KWin/ScreenShot2")
                       .call("org.kde.KWin.ScreenShot2", "CaptureArea", "iiuua{sv}h", area.x,
                             area.y, area.width, area.height, 0, pipe.writeEnd.get()));
  pipe.writeEnd.close();
  const auto bytes =
      readExactly(pipe.readEnd, std::size_t{stride} * static_cast<std::size_t>(area.height));
  for (int y = 0; y < area.height; ++y) {
    const std::uint8_t* pixel = bytes.data() + static_cast<std::size_t>(y) * stride;
    for (int x = 0; x < area.width; ++x, pixel += bytesPerPixel) {
      picture.at(x, y) = {pixel[2], pixel[1], pixel[0]};
    }
  }
  return picture;
}

}  // namespace vistrel::testbed
