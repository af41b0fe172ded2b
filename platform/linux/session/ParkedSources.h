#pragma once

namespace vistrel::platform::linux_desktop {

/// The sources that are kept awake out of sight. Main thread.
class ParkedSources {
 public:
  virtual ~ParkedSources() = default;

  /// All of them, for the time being: other programs keep where their windows are when the session
  /// ends. Takes two seconds at most, after which the rest goes on.
  virtual void sendAllHome() = 0;
  /// Those that `sendAllHome` has sent home and that are still to be out of sight.
  virtual void parkAgain() = 0;
  /// The program is about to end: all of them, within most of a second. What is not at home by then
  /// is left to whoever tidies up after the program, and nothing is moved any more.
  virtual void leaveHomeFirst() = 0;
};

}  // namespace vistrel::platform::linux_desktop
