#pragma once

#include <gtest/gtest.h>

#include "tests/managed/ManagedSession.h"
#include "tests/support/EachWindowManager.h"
#include "tests/support/Poll.h"
#include "tests/support/XWindows.h"

namespace vistrel::testbed {

/// A session under the window manager that the test's parameter names, over a wallpaper.
class ManagedTest : public ::testing::TestWithParam<WindowManager> {
 protected:
  static constexpr Rect wholeScreen{0, 0, 1280, 1024};
  static constexpr Quadrants otherColours{yellow, blue, red, green};
  /// Who asks, in messages to the manager (EWMH, "Source indication in requests").
  static constexpr std::uint32_t byPerson = 2;

  ManagedTest() : ManagedTest(GetParam()) {}
  explicit ManagedTest(WindowManager manager) : session_(manager), wallpaper_(openWallpaper()) {}

  const XConnection& connection() const { return session_.connection(); }
  std::unique_ptr<TestWindow> open(const TestWindow::Options& options = {
                                       .area = {300, 250, 400, 300}}) {
    return std::make_unique<TestWindow>(session_.display().name(), options);
  }

  void addStates(const TestWindow& window, const std::vector<std::string>& states) const {
    changeStates(window, 1, states);
  }
  void removeStates(const TestWindow& window, const std::vector<std::string>& states) const {
    changeStates(window, 0, states);
  }
  void sendToDesktop(const TestWindow& window, std::uint32_t desktop) const {
    connection().sendToManager(window.id(), "_NET_WM_DESKTOP", {desktop, byPerson});
  }
  void activate(const TestWindow& window) const {
    connection().sendToManager(window.id(), "_NET_ACTIVE_WINDOW", {byPerson, 0, 0});
  }
  /// Motif's hints: a window may ask for a frame or do without at any time.
  void setDecorated(const TestWindow& window, bool decorated) const {
    const std::string motif = "_MOTIF_WM_HINTS";
    connection().setNumbers(window.id(), motif, connection().atom(motif),
                            {2, 0, decorated ? 1U : 0U, 0, 0});
    connection().sync();
  }

  /// The screen once managers and their compositors have no more to paint, as far as one can see.
  Picture settledScreen() const;
  /// What a person sees of windows over the wallpaper: the pixels that neither it nor a shadow on
  /// it accounts for.
  Rect seenOverWallpaper() const;
  /// Where the list has that window; empty when it is not listed as being on screen.
  Rect listedFrame(xcb_window_t window);
  /// Whether the stream's picture is what the screen shows where the list has the window, with
  /// black for the wallpaper around rounded corners.
  bool matchesScreen(const StreamedWindow& stream, xcb_window_t window);

  ManagedSession session_;

 private:
  static constexpr Rgb magenta{255, 0, 255};

  std::unique_ptr<TestWindow> openWallpaper();
  void changeStates(const TestWindow& window, std::uint32_t action,
                    const std::vector<std::string>& states) const;

  std::unique_ptr<TestWindow> wallpaper_;
};

}  // namespace vistrel::testbed
