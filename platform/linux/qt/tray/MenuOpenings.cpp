#include "platform/linux/qt/tray/MenuOpenings.h"

namespace vistrel::platform::linux_desktop {

namespace {

/// Longer than a host takes from its first sign to its last, which may include the wait for a slow
/// list; shorter than it takes a person to open a menu again that its host did not say was closed.
constexpr std::chrono::milliseconds longestOpening{1500};

}  // namespace

bool MenuOpenings::begins(MenuSign sign, Time now) {
  const bool isReading = sign == MenuSign::layoutRead;
  // Hosts also read ahead, long before a person opens the menu: what opens it then begins anew.
  const bool fits = isReading || (!given_.empty() && !given_.contains(sign));
  const bool goesOn = begun_ && now - *begun_ < longestOpening && fits;
  if (!goesOn) {
    begun_ = now;
    given_.clear();
  }
  if (!isReading) given_.insert(sign);
  return !goesOn;
}

}  // namespace vistrel::platform::linux_desktop
