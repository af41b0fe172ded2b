#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/desktop/RunningVistrel.h"
#include "tests/support/InputDriver.h"
#include "tests/support/PrivateDisplay.h"
#include "tests/support/ScreenReader.h"

namespace vistrel::testbed {

/// A session with ordinary windows in which a person uses the program.
class DemoDesktop {
 public:
  /// The programs that are there, by their rows in the picker.
  enum class Program { builder, notes, tide };

  /// In a session of these options, of at least 1440 × 900. Throws std::runtime_error when a window
  /// does not open.
  explicit DemoDesktop(const PrivateDisplay::Options& options);

  /// Starts Vistrel: that program, or the one that is built here if it is empty.
  void start(const std::string& program = {});

  const PrivateDisplay& display() const { return display_; }
  const XConnection& connection() const { return connection_; }
  InputDriver& hand() { return hand_; }
  RunningVistrel& vistrel() { return *vistrel_; }

  /// Double-clicks the program in the picker, and gives the panel that opens: the `count`th.
  PanelOnScreen mirror(Program program, std::size_t count);
  xcb_window_t windowOf(Program program) const;
  /// Brings a window to the front, as a taskbar does.
  void activate(xcb_window_t window);
  /// The window with what the manager draws around it.
  Rect framedArea(xcb_window_t window) const;
  Picture screen() const { return ScreenReader(connection_).readAll(); }

 private:
  const PrivateDisplay display_;
  const XConnection connection_{display_.name()};
  InputDriver hand_{connection_};
  struct Source {
    std::unique_ptr<ChildProcess> process;
    xcb_window_t window;
  };
  std::vector<Source> sources_;
  std::unique_ptr<RunningVistrel> vistrel_;
};

}  // namespace vistrel::testbed
