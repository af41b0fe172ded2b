#include "platform/linux/x11/source/FramePacing.h"

#include <algorithm>
#include <cmath>

namespace vistrel::platform::linux_desktop {

void FramePacing::changeNoticed(double now) {
  if (listensSinceChange_) rhythm_.add(now - lastChange_);
  isFirstSinceFrame_ = !hasNewChange_;
  hasNewChange_ = true;
  listensSinceChange_ = false;
  lastChange_ = now;
}

bool FramePacing::wantsNextChange() const {
  if (isWorthWaiting()) return true;
  const auto beat = rhythm_.beat();
  const bool comesAfterFrame = beat && lastChange_ + beat->period > earliest();
  return isFirstSinceFrame_ && !comesAfterFrame;
}

void FramePacing::frameTaken(double now) {
  pace_ = std::max(now, pace_ + interval_);
  hasNewChange_ = false;
  // Whoever takes a frame is told of the first change after it.
  if (now == lastChange_) listening();
  if (interval_ <= 0) return;
  taken_.push_back(now);
  while (taken_.front() <= now - window()) taken_.pop_front();
}

std::size_t FramePacing::framesPerWindow() const {
  constexpr double rounding = 1e-6;
  return static_cast<std::size_t>(std::max(1.0, std::ceil(1 / interval_ - rounding)));
}

double FramePacing::window() const { return static_cast<double>(framesPerWindow()) * interval_; }

double FramePacing::spacedOut() const {
  // As much as a source's own timer jitters: 4 ms at 30 frames a second.
  constexpr double tolerance = 1.0 / 8;
  return pace_ + interval_ * (1 - tolerance);
}

double FramePacing::earliest() const {
  if (interval_ <= 0) return pace_;
  const auto most = framesPerWindow();
  if (taken_.size() < most) return spacedOut();
  return std::max(spacedOut(), taken_[taken_.size() - most] + window());
}

double FramePacing::due() const { return isWorthWaiting() ? nextChange() : earliest(); }

double FramePacing::nextChange() const {
  const auto beat = rhythm_.beat();
  if (!beat) return lastChange_;
  // Few changes stray farther than this.
  const double lateness = 2 * beat->deviation + beat->period / 8;
  return lastChange_ + beat->period + lateness;
}

bool FramePacing::isWorthWaiting() const {
  // How much of the time to the next change the last one has waited when it may be shown. Sources
  // that are hardly faster than frames may be taken come to lie later and later: they lose a frame
  // once in a while and are in time again.
  constexpr double stale = 3.0 / 8;
  constexpr double noSlower = 17.0 / 16;
  const auto beat = rhythm_.beat();
  if (!beat || !hasNewChange_ || beat->period > interval_ * noSlower) return false;
  const double mayBeShown = earliest();
  return mayBeShown - lastChange_ >= beat->period * stale && nextChange() > mayBeShown;
}

}  // namespace vistrel::platform::linux_desktop
