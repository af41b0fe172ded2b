#pragma once

#include <cstdint>

#include "platform/Geometry.h"

namespace vistrel::platform::linux_desktop {

/// Tells double and triple clicks from single ones by where and when the button goes down. Presses
/// that follow one another without end keep counting: 3, 4, …
class ClickCounter {
 public:
  struct Limits {
    std::uint64_t milliseconds;
    double distance;
  };

  /// The count of a press at `position` at `milliseconds` of any steady clock, limits inclusive.
  int press(Point position, std::uint64_t milliseconds, Limits limits);
  /// The count of the last press, which its drags and its release share.
  int count() const { return count_; }

 private:
  Point lastPosition_;
  std::uint64_t lastMilliseconds_ = 0;
  int count_ = 0;
};

}  // namespace vistrel::platform::linux_desktop
