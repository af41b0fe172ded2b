#pragma once

#include <string>

#include "tests/support/Picture.h"
#include "tests/support/Rect.h"
#include "tests/support/XConnection.h"

namespace vistrel::testbed {

/// A window that draws its decorations and a translucent shadow around them by itself, as toolkits
/// do: 32 bits deep, without a frame of the manager (Motif hints), the shadow's widths in
/// `_GTK_FRAME_EXTENTS`. It paints itself anew for each of its sizes.
class ClientDecoratedWindow {
 public:
  /// `shadow` pixels of shadow on each side of `visible`.
  ClientDecoratedWindow(const std::string& display, Rect visible, int shadow);
  ClientDecoratedWindow(const ClientDecoratedWindow&) = delete;
  ClientDecoratedWindow& operator=(const ClientDecoratedWindow&) = delete;

  xcb_window_t id() const { return id_; }
  /// Without its shadow, in root coordinates.
  Rect visible() const;
  /// Draws a shadow of another width into the window as large as it is now.
  void setShadow(int shadow);
  void paint(Rgb colour);

 private:
  void createWindow(Rect whole);
  void fill(Rect part, std::uint32_t pixel);

  XConnection connection_;
  xcb_window_t id_;
  xcb_gcontext_t pen_;
  int shadow_;
  Rgb colour_;
};

}  // namespace vistrel::testbed
