#pragma once

namespace vistrel::platform::linux_desktop {

/// Ends the process, with status 0, however long its main thread takes to end by itself: toolkits
/// and libraries wait for services that hang. What is not done by then is what is undone for a
/// process that was killed. One at a time, whose timer has the signal SIGALRM to itself.
class EndDeadline {
 public:
  /// Main thread.
  EndDeadline();
  EndDeadline(const EndDeadline&) = delete;
  EndDeadline& operator=(const EndDeadline&) = delete;
  /// The process goes on.
  ~EndDeadline();

  /// The process is over in so many milliseconds, or sooner where that was said before. Does
  /// nothing while there is no deadline object. Also in a signal's context.
  static void endIn(long milliseconds);
};

}  // namespace vistrel::platform::linux_desktop
