#pragma once

#include "tests/support/Picture.h"
#include "tests/support/Rect.h"
#include "tests/support/XConnection.h"

namespace vistrel::testbed {

/// Reads what stands on the screen, as a person in front of it would see it (without the pointer).
class ScreenReader {
 public:
  /// `connection` outlives this object.
  explicit ScreenReader(const XConnection& connection) : connection_(&connection) {}
  virtual ~ScreenReader() = default;
  ScreenReader(const ScreenReader&) = delete;
  ScreenReader& operator=(const ScreenReader&) = delete;

  /// The part of the root window that lies in `area`; what is off screen is black. Throws
  /// std::runtime_error when the server is gone.
  virtual Picture read(Rect area) const;
  Picture readAll() const;
  /// The window's own picture: where a compositor shows windows (XWayland), the root has none.
  Picture readWindow(xcb_window_t window, int width, int height) const;
  Rgb pixel(Point point) const { return read({point.x, point.y, 1, 1}).at(0, 0); }

 private:
  /// Reads the part of `drawable` in `area` into the same place of `picture`, which begins at
  /// `origin`.
  void readInto(Picture& picture, Point origin, xcb_drawable_t drawable, Rect area) const;

  const XConnection* connection_;
};

}  // namespace vistrel::testbed
