#pragma once

#include <optional>

namespace vistrel::platform::linux_desktop {

/// The time between the changes of a source that changes steadily, learnt from the last few.
class ChangeRhythm {
 public:
  /// Two changes followed one another after so many seconds.
  void add(double gap);

  struct Beat {
    double period;
    /// How far the changes stray from it.
    double deviation;
  };
  /// None while the source changes irregularly or not enough is known.
  std::optional<Beat> beat() const;

 private:
  double period_ = 0;
  double deviation_ = 0;
};

}  // namespace vistrel::platform::linux_desktop
