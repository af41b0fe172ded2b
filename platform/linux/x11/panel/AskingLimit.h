#pragma once

#include <cstddef>
#include <deque>

namespace vistrel::platform::linux_desktop {

/// How often another program is asked for one thing that it takes away again, so that two programs
/// that want the opposite of each other never go on for ever.
class AskingLimit {
 public:
  /// `times` times within `seconds` seconds.
  AskingLimit(std::size_t times, double seconds) : times_(times), seconds_(seconds) {}

  /// Whether to ask at `now`, in seconds of any clock that goes on: then that counts. Once as many
  /// as there may be fell into that time, the other program has decided, and there are no more.
  bool mayAsk(double now);
  /// Something else has happened, so that it may decide otherwise.
  void renew() { asked_.clear(); }

 private:
  std::size_t times_;
  double seconds_;
  std::deque<double> asked_;  // when
};

}  // namespace vistrel::platform::linux_desktop
