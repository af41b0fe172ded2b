#include "platform/linux/x11/panel/AskingLimit.h"

namespace vistrel::platform::linux_desktop {

bool AskingLimit::mayAsk(double now) {
  if (asked_.size() >= times_) return false;
  while (!asked_.empty() && now - asked_.front() > seconds_) asked_.pop_front();
  asked_.push_back(now);
  return true;
}

}  // namespace vistrel::platform::linux_desktop
