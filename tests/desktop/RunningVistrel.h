#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/desktop/PanelOnScreen.h"
#include "tests/desktop/PickerOnScreen.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/PrivateDisplay.h"
#include "tests/support/XConnection.h"

namespace vistrel::testbed {

/// The built program, started on a private display, and its windows.
class RunningVistrel {
 public:
  /// Starts it with these arguments in the display's session. Both outlive this object. Its windows
  /// are looked at as ones of `scale` pixels to a point.
  RunningVistrel(const PrivateDisplay& display, const XConnection& connection,
                 const std::vector<std::string>& arguments = {}, double scale = 1);

  /// Starts it by `command`, on the display that `connection` leads to and that outlives this
  /// object.
  RunningVistrel(const XConnection& connection, const ChildProcess::Command& command,
                 double scale = 1);
  /// The same, with what its windows show read by `screen`.
  RunningVistrel(const XConnection& connection, const ChildProcess::Command& command, double scale,
                 std::shared_ptr<const ScreenReader> screen);

  /// How to start the program with `arguments`.
  static ChildProcess::Command command(const std::vector<std::string>& arguments,
                                       std::vector<std::string> environment);
  /// The same with standard error where the shell's `>&` leads: "-" for nowhere, or the number of a
  /// descriptor that the program inherits.
  static ChildProcess::Command withStandardError(ChildProcess::Command command,
                                                 const std::string& where);

  ChildProcess& process() { return process_; }
  const ChildProcess& process() const { return process_; }

  /// Waits until the picker is on screen. Throws std::runtime_error when it does not come.
  PickerOnScreen picker() const;
  /// Waits until the picker lists exactly `count` windows, and gives their rows. Throws
  /// std::runtime_error when it does not.
  std::vector<Rect> pickerRows(std::size_t count) const;
  /// The panels on screen, in the order in which they were opened.
  std::vector<PanelOnScreen> panels() const;
  /// Waits until exactly `count` panels are on screen. Throws std::runtime_error when that does not
  /// happen.
  std::vector<PanelOnScreen> panels(std::size_t count) const;

 private:
  std::vector<xcb_window_t> windowsOnScreen() const;
  /// By what the program says of its window; titles need not tell, and managers change states.
  bool isPanel(xcb_window_t window) const;

  const XConnection* connection_;
  double scale_;
  std::shared_ptr<const ScreenReader> screen_;
  ChildProcess process_;
};

}  // namespace vistrel::testbed
