#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "tests/support/ScreenReader.h"
#include "tests/support/XConnection.h"

namespace vistrel::testbed {

/// The window picker as a person finds it on the screen.
class PickerOnScreen {
 public:
  /// What the menus take of the window's height at its top.
  static constexpr int menuBarHeight = 19;

  /// `connection` outlives this object. The picker is on a monitor with `scale` pixels to a point.
  /// What is shown is read by `screen`.
  PickerOnScreen(const XConnection& connection, xcb_window_t window, double scale,
                 std::shared_ptr<const ScreenReader> screen)
      : connection_(&connection), window_(window), scale_(scale), screen_(std::move(screen)) {}

  xcb_window_t id() const { return window_; }
  bool isOnScreen() const;
  /// Without decorations; empty once the window is gone.
  Rect area() const;

  /// The rows of the list as far as they are on screen, top row first: each the area of its text,
  /// found by looking where the list is not empty.
  std::vector<Rect> rows() const;
  /// Whether a row's text is in the green of a mirrored window.
  bool isMarked(Rect row) const;
  Point refreshButton() const;
  Point mirrorButton() const;

 private:
  int pixels(int points) const;
  Rect list() const;
  bool showsList() const;

  const XConnection* connection_;
  xcb_window_t window_;
  double scale_;
  std::shared_ptr<const ScreenReader> screen_;
};

}  // namespace vistrel::testbed
