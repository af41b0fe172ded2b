#include "tests/support/ScreenReader.h"

#include <algorithm>
#include <stdexcept>

namespace vistrel::testbed {
namespace {

// Depth 24 and 32 visuals keep a pixel in 32 bits: blue, green, red in ascending order where the
// server is little-endian, as a server on this machine is wherever the tests run.
constexpr std::size_t bytesPerPixel = 4;

}  // namespace

Picture ScreenReader::read(Rect area) const {
  Picture picture(area.width, area.height);
  const xcb_screen_t& screen = connection_->screen();
  const int left = std::max(area.x, 0);
  const int top = std::max(area.y, 0);
  const int right = std::min<int>(area.x + area.width, screen.width_in_pixels);
  const int bottom = std::min<int>(area.y + area.height, screen.height_in_pixels);
  if (left >= right || top >= bottom) {
    return picture;
  }
  readInto(picture, {area.x, area.y}, connection_->root(), {left, top, right - left, bottom - top});
  return picture;
}

Picture ScreenReader::readWindow(xcb_window_t window, int width, int height) const {
  Picture picture(width, height);
  readInto(picture, {0, 0}, window, {0, 0, width, height});
  return picture;
}

void ScreenReader::readInto(Picture& picture, Point origin, xcb_drawable_t drawable,
                            Rect area) const {
  const XReply<xcb_get_image_reply_t> reply(xcb_get_image_reply(
      connection_->get(),
      xcb_get_image(connection_->get(), XCB_IMAGE_FORMAT_Z_PIXMAP, drawable,
                    static_cast<std::int16_t>(area.x), static_cast<std::int16_t>(area.y),
                    static_cast<std::uint16_t>(area.width), static_cast<std::uint16_t>(area.height),
                    ~std::uint32_t{0}),
      nullptr));
  if (!reply) {
    throw std::runtime_error("the screen cannot be read");
  }
  const std::uint8_t* bytes = xcb_get_image_data(reply.get());
  for (int y = area.y; y < area.y + area.height; ++y) {
    for (int x = area.x; x < area.x + area.width; ++x, bytes += bytesPerPixel) {
      picture.at(x - origin.x, y - origin.y) = {bytes[2], bytes[1], bytes[0]};
    }
  }
}

Picture ScreenReader::readAll() const {
  const xcb_screen_t& screen = connection_->screen();
  return read({0, 0, screen.width_in_pixels, screen.height_in_pixels});
}

}  // namespace vistrel::testbed
