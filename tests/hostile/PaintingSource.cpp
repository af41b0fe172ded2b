// A program that shows a window and paints it a thousand times a second, changing its colours each
// time, for as long as it is let. It writes its window's number to standard output.

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <xcb/xcb.h>

namespace {

constexpr std::uint16_t side = 200;

void paint(xcb_connection_t* connection, xcb_window_t window, xcb_gcontext_t pen, unsigned turn) {
  constexpr std::array<std::uint32_t, 3> colours{0xdc2828, 0x28b446, 0x3250dc};
  constexpr int stripes = 4;
  for (int i = 0; i < stripes; ++i) {
    const auto colour = colours[(turn + static_cast<unsigned>(i)) % colours.size()];
    const xcb_rectangle_t stripe{0, static_cast<std::int16_t>(i * side / stripes), side,
                                 side / stripes};
    xcb_change_gc(connection, pen, XCB_GC_FOREGROUND, &colour);
    xcb_poly_fill_rectangle(connection, window, pen, 1, &stripe);
  }
  xcb_flush(connection);
}

}  // namespace

int main() {
  auto* const connection = xcb_connect(nullptr, nullptr);
  if (xcb_connection_has_error(connection) != 0) return 1;
  const auto* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
  const auto window = xcb_generate_id(connection);
  const auto pen = xcb_generate_id(connection);
  xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, screen->root, 20, 20, side, side, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
  xcb_create_gc(connection, pen, window, 0, nullptr);
  xcb_map_window(connection, window);
  paint(connection, window, pen, 0);
  // Whoever reads the number finds the window.
  std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
  std::printf("%u\n", window);
  std::fflush(stdout);
  for (unsigned turn = 1; xcb_connection_has_error(connection) == 0; ++turn) {
    paint(connection, window, pen, turn);
    constexpr timespec millisecond{0, 1'000'000};
    nanosleep(&millisecond, nullptr);
  }
  xcb_disconnect(connection);
}
