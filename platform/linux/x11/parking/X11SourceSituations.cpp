#include "platform/linux/x11/parking/X11SourceSituations.h"

#include "platform/linux/x11/manager/Manager.h"

namespace vistrel::platform::linux_desktop {

using enum SourceSituation;

namespace {

SourceSituation situationOf(std::optional<ParkingOutcome> outcome) {
  using enum ParkingOutcome;
  if (outcome == underWay) return waitsForManager;
  if (outcome == belowOthers) return parkedBelowOthers;
  return outcome == inSight ? parkedInSight : ordinary;
}

}  // namespace

SourceSituation X11SourceSituations::of(std::uint32_t window) {
  auto& connection = *connection_;
  // mutter 43.8 and, while it composites, kwin_x11 5.27.5 leave windows mapped there, and their
  // mirrors stay live. A minimised one would not be drawn on any desktop.
  const bool isUndrawnThere = hiddenDesktopOf(connection, window) &&
                              !isViewable(connection, window) &&
                              !isMarkedHidden(connection, window);
  const auto outcome = parked_->outcomeFor(window);
  if (!isUndrawnThere || outcome == ParkingOutcome::underWay) return situationOf(outcome);
  return outcome ? parkedOnHiddenDesktop : onHiddenDesktop;
}

}  // namespace vistrel::platform::linux_desktop
