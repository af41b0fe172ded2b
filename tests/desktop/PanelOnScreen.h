#pragma once

#include <memory>
#include <utility>

#include "tests/support/ScreenReader.h"
#include "tests/support/TestWindow.h"
#include "tests/support/XConnection.h"

namespace vistrel::testbed {

/// What the live dot says, by its colour: green, amber, red.
enum class Dot { live, stale, failed, other };

/// A mirror's panel as a person finds it on the screen.
class PanelOnScreen {
 public:
  static constexpr int titleBarHeight = 26;

  /// The panel's size for a source of that size: 34 % of the source's width, between 220 and 520,
  /// at the source's aspect ratio under the title bar.
  static Rect computedArea(Rect source, Point origin);

  /// `connection` outlives this object. The panel is on a monitor with `scale` pixels to a point.
  PanelOnScreen(const XConnection& connection, xcb_window_t window, double scale = 1)
      : PanelOnScreen(connection, window, scale, std::make_shared<ScreenReader>(connection)) {}
  /// What is shown is read by `screen`.
  PanelOnScreen(const XConnection& connection, xcb_window_t window, double scale,
                std::shared_ptr<const ScreenReader> screen)
      : connection_(&connection), window_(window), scale_(scale), screen_(std::move(screen)) {}

  xcb_window_t id() const { return window_; }
  bool isOnScreen() const;
  /// Empty once the panel is gone.
  Rect area() const;

  /// A place on the title bar with nothing on it but the title.
  Point titleBar() const;
  Point closeButton() const;
  Point grip() const;
  /// What is under the title bar.
  Rect contents() const;

  Dot dot() const;
  /// The colours at the middle of the four quarters of `contents()`.
  Quadrants picture() const;
  /// Whether those are the colours of `expected`.
  bool shows(const Quadrants& expected) const;

 private:
  int pixels(double points) const;

  const XConnection* connection_;
  xcb_window_t window_;
  double scale_;
  std::shared_ptr<const ScreenReader> screen_;
};

}  // namespace vistrel::testbed
