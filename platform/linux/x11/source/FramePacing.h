#pragma once

#include <cstddef>
#include <deque>

#include "platform/linux/x11/source/ChangeRhythm.h"

namespace vistrel::platform::linux_desktop {

/// Decides when frames of a changing source are taken.
///
/// However they are spread, no more frames are taken in any second (from its beginning up to, not
/// including, its end) than the interval allows. Within that a frame is taken as soon as there is
/// news: a grid of fixed moments would lock against the source at some random phase and show every
/// frame late. For the same reason a source that changes faster than frames may be taken is taken
/// at its changes, at every second one for example, and not in between. All times are seconds of
/// one monotonic clock.
class FramePacing {
 public:
  /// At least so many seconds from frame to frame on average; as many as there are if 0.
  explicit FramePacing(double interval) : interval_(interval) {}
  void setInterval(double interval) { interval_ = interval; }

  /// A change has been noticed.
  void changeNoticed(double now);
  /// Whether the next change is to be noticed as well although no frame is taken now: to learn the
  /// source's rhythm, or since its next change is worth waiting for. Asked after `changeNoticed`.
  bool wantsNextChange() const;
  /// From the change noticed last on, the next one will be noticed at once.
  void listening() { listensSinceChange_ = true; }
  void frameTaken(double now);

  /// When the next frame may be taken.
  double earliest() const;
  /// When the next frame is best taken, there being news, if no change is noticed before that. A
  /// change noticed from `earliest` on makes it due at once.
  double due() const;

 private:
  double spacedOut() const;
  std::size_t framesPerWindow() const;
  double window() const;
  /// When the change after the one noticed last should have come.
  double nextChange() const;
  bool isWorthWaiting() const;

  double interval_;
  double pace_ = 0;           // the moment to which the frames so far reach
  std::deque<double> taken_;  // within the window that ends with the last one
  ChangeRhythm rhythm_;
  double lastChange_ = 0;
  bool hasNewChange_ = false;       // since the last frame
  bool isFirstSinceFrame_ = false;  // the change noticed last
  bool listensSinceChange_ = false;
};

}  // namespace vistrel::platform::linux_desktop
