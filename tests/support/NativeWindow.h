#pragma once

#include <string>
#include <vector>

#include "tests/support/CommandedProgram.h"
#include "tests/support/Picture.h"
#include "tests/support/Rect.h"
#include "tests/support/TestWindow.h"

namespace vistrel::testbed {

/// An ordinary window of some Wayland program, which is a process of its own, without decorations
/// unless it asks the compositor for some.
/// Over it the pointer is a black square of 16 × 16, whose first corner is its hot spot.
/// The compositor puts it where it likes. All operations return once the compositor has dealt with
/// them, and throw std::runtime_error when it does not by a generous deadline.
class NativeWindow {
 public:
  struct Options {
    std::string title = "Native Document";
    /// What the compositor finds the program's desktop entry by.
    std::string applicationId = "com.example.sample";
    int width = 400;
    int height = 300;
    Quadrants picture = fourColours;
    /// Whether the compositor puts a frame with a title bar around it, where it does that at all:
    /// mutter does not.
    bool isDecorated = false;
  };

  /// Opens the window in the session whose programs have `environment`, and returns once it shows
  /// its picture.
  NativeWindow(const std::vector<std::string>& environment, const Options& options);

  pid_t pid() const { return program_.pid(); }
  /// Repaints all of it at one stroke.
  void show(const Quadrants& picture);
  /// Repaints a part of it, in its own coordinates.
  void paint(Rect part, Rgb colour);
  /// Resizes, and paints the picture anew at that size.
  void resize(int width, int height);
  void setTitle(const std::string& title);
  void minimise();
  void maximise(bool isMaximised);
  void fillScreen(bool isFullScreen);
  /// Whether the compositor says that it is the one that a person works with.
  bool isActive();
  /// Whether the pointer is over it.
  bool hasPointer();
  /// How many buttons a person has pressed in it, and how many keys, so far.
  int pressedButtons();
  int typedKeys();
  /// The program closes its window, and ends.
  void close();

 private:
  CommandedProgram program_;
};

}  // namespace vistrel::testbed
