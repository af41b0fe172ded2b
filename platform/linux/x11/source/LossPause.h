#pragma once

namespace vistrel::platform::linux_desktop {

/// How long no frames are taken of a window that loses its parts, in seconds of one monotonic
/// clock. It may be going, and the picture that stays then is to be one of the whole window. A
/// window that only changes its parts, or goes on doing so, is shown again soon.
class LossPause {
 public:
  void lost(double now) {
    if (now >= end()) first_ = now;
    last_ = now;
  }
  /// In the past while nothing is lost.
  double end() const { return first_ + longest < last_ + quiet ? first_ + longest : last_ + quiet; }

 private:
  // A busy server lets others have their turn between two requests of the one that is ending.
  static constexpr double quiet = 0.05;
  static constexpr double longest = 0.25;
  static constexpr double never = -1;

  double first_ = never;
  double last_ = never;
};

}  // namespace vistrel::platform::linux_desktop
