#include "platform/linux/wayland/kwin/KWinDockAreas.h"

#include <cstddef>

#include "platform/linux/wayland/kwin/WorkAreas.h"
#include "platform/linux/x11/server/PixelGeometry.h"

namespace vistrel::platform::linux_desktop {

void KWinDockAreas::watch(std::function<void()> changed) {
  x_->watch(changed);
  areas_ = WorkAreaWatch::start(std::move(changed));
}

std::vector<PixelRect> KWinDockAreas::freeAreas(const std::vector<PixelRect>& monitors) const {
  auto free = x_->freeAreas(monitors);
  if (!areas_) return free;
  const auto ofKWin = linux_desktop::freeAreas(monitors, areas_->areas());
  for (std::size_t i = 0; i < free.size(); ++i) {
    const auto ofBoth = intersection(free[i], ofKWin[i]);
    if (!isEmpty(ofBoth)) free[i] = ofBoth;
  }
  return free;
}

}  // namespace vistrel::platform::linux_desktop
