#include "platform/linux/qt/windows/PlacedFrame.h"

#include <algorithm>
#include <utility>

namespace vistrel::platform::linux_desktop {

namespace {

/// More frames than a manager leaves unanswered; a bound for windows that it never answers, which
/// are those that are not mapped.
constexpr std::size_t mostUnderWay = 64;

}  // namespace

bool PlacedFrame::ask(const QRect& frame) {
  if (frame == current_) return false;
  current_ = frame;
  underWay_.push_back(frame);
  if (underWay_.size() > mostUnderWay) underWay_.pop_front();
  return true;
}

bool PlacedFrame::isMovedTo(const QRect& frame) {
  // Managers say a frame more than once (ICCCM 4.1.5 has them send what the server tells as well),
  // the later time perhaps when the next one is on its way.
  const bool isRepeated = frame == told_;
  hear(frame);
  if (isConfirmation_ || (isRepeated && !underWay_.empty())) return false;
  underWay_.clear();
  if (frame == current_) return false;
  current_ = frame;
  return true;
}

void PlacedFrame::hear(const QRect& frame) {
  const bool isRepeated = frame == std::exchange(told_, frame);
  isConfirmation_ = confirms(frame) || (isRepeated && isConfirmation_);
}

bool PlacedFrame::isRefused() {
  underWay_.clear();
  if (told_.isNull() || told_ == current_) return false;
  current_ = told_;
  return true;
}

bool PlacedFrame::confirms(const QRect& frame) {
  const auto found = std::find(underWay_.begin(), underWay_.end(), frame);
  if (found == underWay_.end()) return false;
  // Managers answer in order and may leave out frames that a newer one has overtaken.
  underWay_.erase(underWay_.begin(), found + 1);
  return true;
}

}  // namespace vistrel::platform::linux_desktop
