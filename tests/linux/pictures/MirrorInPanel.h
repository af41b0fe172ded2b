#pragma once

#include <vector>

#include "tests/linux/pictures/DrawnPictures.h"
#include "tests/linux/pictures/TestMirror.h"
#include "tests/support/Poll.h"
#include "tests/support/PrivateDisplay.h"

namespace vistrel::platform::linux_desktop {

/// One window mirrored in a panel for as long as this lives. Main thread.
class MirrorInPanel {
 public:
  struct Options {
    xcb_window_t source;
    testbed::Rect panel;
    bool showsCursor = true;
    MediaTime interval{1, 30};
  };
  /// Returns with the first frame; throws std::runtime_error when there comes none. `display` is
  /// the one of this process's environment.
  MirrorInPanel(const testbed::PrivateDisplay& display, const Options& options);

  /// As `TestMirror::frames`.
  std::vector<double> frames() const { return mirror_.frames(); }
  /// What the panel shows, once it has been given the newest picture.
  Bitmap shown();
  bool eventuallyShows(const Bitmap& expected) {
    return testbed::eventually([&] { return shown() == expected; });
  }

 private:
  const testbed::XConnection connection_;
  TestMirror mirror_;
};

}  // namespace vistrel::platform::linux_desktop
