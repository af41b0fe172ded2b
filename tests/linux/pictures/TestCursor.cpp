#include "tests/linux/pictures/TestCursor.h"

#include <cmath>
#include <random>

#include "platform/linux/x11/picture/Drawing.h"
#include "tests/support/TestWindow.h"

namespace vistrel::platform::linux_desktop {
namespace {

xcb_cursor_t cursorOf(Connection& connection, const CursorLook& look) {
  const auto canvas =
      makeCanvas(connection, 32, connection.formats().translucent, {look.width, look.height});
  putRows(connection, canvas.pixmap, 32, {0, 0, look.width, look.height},
          reinterpret_cast<const std::uint8_t*>(look.pixels.data()),
          static_cast<std::size_t>(look.width) * sizeof(std::uint32_t));
  const auto cursor = xcb_generate_id(connection.xcb());
  xcb_render_create_cursor(connection.xcb(), cursor, canvas.picture.id(),
                           static_cast<std::uint16_t>(look.hotSpot.x),
                           static_cast<std::uint16_t>(look.hotSpot.y));
  return cursor;
}

}  // namespace

CursorLook CursorLook::translucent(int width, int height, testbed::Point hotSpot) {
  std::mt19937 random(17);
  CursorLook look{width, height, {}, hotSpot};
  for (int i = 0; i < width * height; ++i) {
    const std::uint32_t alpha = static_cast<std::uint32_t>(i * 255 / (width * height - 1));
    const auto channel = [&] { return random() % 256 * alpha / 255; };
    look.pixels.push_back(alpha << 24 | channel() << 16 | channel() << 8 | channel());
  }
  return look;
}

CursorLook CursorLook::uniform(int width, int height, testbed::Rgb colour) {
  const std::uint32_t pixel = 0xff000000u | std::uint32_t{colour.red} << 16 |
                              std::uint32_t{colour.green} << 8 | colour.blue;
  return {width, height,
          std::vector<std::uint32_t>(static_cast<std::size_t>(width * height), pixel)};
}

CursorLook CursorLook::framed(int width, int height) {
  auto look = uniform(width, height, testbed::black);
  for (int y = 1; y < height - 1; ++y) {
    for (int x = 1; x < width - 1; ++x) {
      look.pixels[static_cast<std::size_t>(y * width + x)] = 0xffffffff;
    }
  }
  return look;
}

Bitmap withCursor(const Bitmap& picture, const CursorLook& look, testbed::Point place) {
  Bitmap result = picture;
  for (int y = 0; y < look.height; ++y) {
    for (int x = 0; x < look.width; ++x) {
      const testbed::Point at{place.x - look.hotSpot.x + x, place.y - look.hotSpot.y + y};
      if (at.x < 0 || at.y < 0 || at.x >= picture.width() || at.y >= picture.height()) continue;
      const std::uint32_t pixel = look.pixels[static_cast<std::size_t>(y * look.width + x)];
      const auto over = [&](std::uint8_t below, int shift) {
        const double kept = below * (255 - (pixel >> 24)) / 255.0;
        return static_cast<std::uint8_t>((pixel >> shift & 0xff) + std::lround(kept));
      };
      auto& target = result.at(at.x, at.y);
      target = {over(target.red, 16), over(target.green, 8), over(target.blue, 0)};
    }
  }
  return result;
}

CursorOfWindow::CursorOfWindow(Connection& connection, xcb_window_t window,
                               const std::vector<CursorLook>& looks, std::uint32_t delay)
    : connection_(connection), window_(window) {
  auto* const xcb = connection_.xcb();
  std::vector<xcb_render_animcursorelt_t> cursors;
  for (const auto& each : looks) cursors.push_back({cursorOf(connection_, each), delay});
  wear(cursors.front().cursor);
  if (cursors.size() > 1) {
    const auto animated = xcb_generate_id(xcb);
    xcb_render_create_anim_cursor(xcb, animated, static_cast<std::uint32_t>(cursors.size()),
                                  cursors.data());
    wear(animated);
    xcb_free_cursor(xcb, animated);
  }
  // The window keeps the one that it wears.
  for (const auto& each : cursors) xcb_free_cursor(xcb, each.cursor);
  connection_.sync();
}

CursorOfWindow::~CursorOfWindow() {
  wear(XCB_NONE);
  connection_.sync();
}

void CursorOfWindow::wear(xcb_cursor_t cursor) {
  xcb_change_window_attributes(connection_.xcb(), window_, XCB_CW_CURSOR, &cursor);
}

}  // namespace vistrel::platform::linux_desktop
