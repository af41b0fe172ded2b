#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

#include "tests/support/Picture.h"
#include "tests/support/Rect.h"
#include "tests/support/XConnection.h"

namespace vistrel::testbed {

/// The colours of a window's four quarters.
struct Quadrants {
  Rgb topLeft;
  Rgb topRight;
  Rgb bottomLeft;
  Rgb bottomRight;

  static Quadrants uniform(Rgb colour) { return {colour, colour, colour, colour}; }
};

inline constexpr Rgb black{0, 0, 0};
inline constexpr Rgb white{255, 255, 255};
inline constexpr Rgb red{220, 40, 40};
inline constexpr Rgb green{40, 180, 70};
inline constexpr Rgb blue{50, 80, 220};
inline constexpr Rgb yellow{230, 210, 60};
inline constexpr Quadrants fourColours{red, green, blue, yellow};

/// An ordinary window of some program, on a connection of its own. What it shows is its background,
/// so the server repaints it and nothing has to answer events. All operations return once they have
/// taken effect, and throw std::runtime_error when they do not by a generous deadline.
class TestWindow {
 public:
  struct Options {
    std::string title = "Document";
    /// The class of WM_CLASS, which is what a person knows the program by.
    std::string application = "Sample";
    /// The area without decorations, in root coordinates.
    Rect area{100, 100, 400, 300};
    Quadrants picture = fourColours;
    /// Whether the window manager draws its frame around it (Motif hints).
    bool decorated = true;
    /// Whether the window manager has a say at all; a menu's or a screen saver's window has none
    /// over it (override-redirect) and lies above what is there.
    bool managed = true;
    /// What _NET_WM_PID says; this process when none is given.
    std::optional<pid_t> pid = std::nullopt;
    /// Makes it a dock that keeps so much of the screen free (EWMH 1.5, _NET_WM_STRUT_PARTIAL).
    std::vector<std::uint32_t> struts = {};
  };

  /// Opens the window on the display `display` and returns once it is on screen.
  TestWindow(const std::string& display, const Options& options);
  TestWindow(const TestWindow&) = delete;
  TestWindow& operator=(const TestWindow&) = delete;
  /// Destroys the window.
  ~TestWindow() = default;

  xcb_window_t id() const { return id_; }
  /// Without decorations, in root coordinates.
  Rect area() const;

  /// A dock from now on keeps so much free.
  void setStruts(const std::vector<std::uint32_t>& struts);
  /// Repaints all of it at one stroke.
  void show(const Quadrants& picture);
  /// Repaints a part of it, in its own coordinates.
  void paint(Rect part, Rgb colour);

  /// Without decorations, in root coordinates.
  void moveTo(Point origin);
  /// Resizes, and paints the picture anew at that size.
  void resize(int width, int height);
  void unmap();
  void map();
  /// As by a person's click on its frame's button (ICCCM 4.1.4).
  void minimise();
  /// Stacks it above `other`, which it then covers where they overlap.
  void raiseAbove(const TestWindow& other);
  /// How many keys a person has typed into it so far.
  int typedKeys();
  /// How many buttons a person has pressed in it so far. The manager, which a press goes to first,
  /// has dealt with these.
  int pressedButtons();
  /// The program closes its window.
  void destroy();

 private:
  void announce(const Options& options) const;
  void takeInput();
  void draw(Rect part, Rgb colour);
  void present(Rect part);

  XConnection connection_;
  xcb_window_t id_;
  xcb_pixmap_t surface_ = XCB_NONE;
  xcb_gcontext_t pen_;
  int width_;
  int height_;
  int typedKeys_ = 0;
  int pressedButtons_ = 0;
  Quadrants picture_;
};

}  // namespace vistrel::testbed
