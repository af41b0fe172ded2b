#include "platform/linux/qt/FrameEchoes.h"

#include <algorithm>

namespace vistrel::platform::linux_desktop {

namespace {

/// More frames than a manager leaves unanswered; a bound for windows that it never answers, which
/// are those that are not mapped.
constexpr std::size_t mostUnderWay = 64;

}  // namespace

void FrameEchoes::asked(const QRect& frame) {
  underWay_.push_back(frame);
  if (underWay_.size() > mostUnderWay) underWay_.pop_front();
}

bool FrameEchoes::isEcho(const QRect& frame) {
  const auto found = std::find(underWay_.begin(), underWay_.end(), frame);
  if (found == underWay_.end()) {
    underWay_.clear();
    return false;
  }
  // Managers answer in order and may leave out frames that a newer one has overtaken.
  underWay_.erase(underWay_.begin(), found + 1);
  return true;
}

}  // namespace vistrel::platform::linux_desktop
