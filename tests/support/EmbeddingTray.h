#pragma once

#include <string>

#include "tests/support/Picture.h"
#include "tests/support/Rect.h"
#include "tests/support/XConnection.h"

namespace vistrel::testbed {

/// A tray as X11 desktops have had it before the status notifier protocol: it takes icons' windows
/// into its own (freedesktop.org's System Tray Protocol). It has room for one. Goes away with this
/// object.
class EmbeddingTray {
 public:
  static constexpr Rgb grey{0xd0, 0xd0, 0xd0};

  /// Throws std::runtime_error when the display has another one.
  EmbeddingTray(const std::string& display, Rect area);

  /// Takes in the windows that ask for it and waits until the latest is on screen, which it gives.
  /// Throws std::runtime_error when none comes.
  xcb_window_t icon();

 private:
  void announce() const;
  void takeIn();
  void embed(xcb_window_t icon);

  XConnection connection_;
  xcb_window_t window_;
  xcb_window_t icon_ = XCB_WINDOW_NONE;
};

}  // namespace vistrel::testbed
