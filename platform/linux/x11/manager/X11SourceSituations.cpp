#include "platform/linux/x11/manager/X11SourceSituations.h"

#include "platform/linux/x11/manager/Manager.h"

namespace vistrel::platform::linux_desktop {

SourceSituation X11SourceSituations::of(std::uint32_t window) {
  auto& connection = *connection_;
  // Some managers leave windows mapped there, and their mirrors stay live. A minimised one would
  // not be drawn on any desktop.
  const bool isUndrawnThere = hiddenDesktopOf(connection, window) &&
                              !isViewable(connection, window) &&
                              !isMarkedHidden(connection, window);
  return isUndrawnThere ? SourceSituation::onHiddenDesktop : SourceSituation::ordinary;
}

}  // namespace vistrel::platform::linux_desktop
