#include "platform/linux/x11/source/ChangeRhythm.h"

#include <cmath>

namespace vistrel::platform::linux_desktop {

void ChangeRhythm::add(double gap) {
  const double error = std::abs(gap - period_);
  if (error > period_ / 2) {
    // Another rhythm, to be believed once it has gone on for a few changes.
    period_ = gap;
    deviation_ = gap / 2;
    return;
  }
  constexpr double shareOfPeriod = 1.0 / 8;
  constexpr double shareOfDeviation = 1.0 / 4;
  period_ += (gap - period_) * shareOfPeriod;
  deviation_ += (error - deviation_) * shareOfDeviation;
}

std::optional<ChangeRhythm::Beat> ChangeRhythm::beat() const {
  constexpr double steady = 1.0 / 4;
  if (period_ <= 0 || deviation_ > period_ * steady) return std::nullopt;
  return Beat{period_, deviation_};
}

}  // namespace vistrel::platform::linux_desktop
