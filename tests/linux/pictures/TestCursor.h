#pragma once

#include <cstdint>
#include <vector>

#include "platform/linux/x11/server/Connection.h"
#include "tests/linux/pictures/DrawnPictures.h"

namespace vistrel::platform::linux_desktop {

/// What a pointer looks like: premultiplied 0xAARRGGBB, top row first.
struct CursorLook {
  int width = 0;
  int height = 0;
  std::vector<std::uint32_t> pixels;
  testbed::Point hotSpot{};

  /// Every alpha, and colours that go with it.
  static CursorLook translucent(int width, int height, testbed::Point hotSpot);
  static CursorLook uniform(int width, int height, testbed::Rgb colour);
  /// White with a black line of one pixel around it, as pointers have.
  static CursorLook framed(int width, int height);
};

/// `picture` with the pointer at `place`, by the definition.
Bitmap withCursor(const Bitmap& picture, const CursorLook& look, testbed::Point place);

/// The pointer's look over one window, for as long as this lives.
class CursorOfWindow {
 public:
  /// Cycles through the looks where there are several, each for `delay` milliseconds.
  CursorOfWindow(Connection& connection, xcb_window_t window, const std::vector<CursorLook>& looks,
                 std::uint32_t delay = 0);
  CursorOfWindow(const CursorOfWindow&) = delete;
  CursorOfWindow& operator=(const CursorOfWindow&) = delete;
  ~CursorOfWindow();

 private:
  void wear(xcb_cursor_t cursor);

  Connection& connection_;
  const xcb_window_t window_;
};

}  // namespace vistrel::platform::linux_desktop
