#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "platform/linux/session/DockAreas.h"
#include "platform/linux/wayland/kwin/WorkAreaWatch.h"

namespace vistrel::platform::linux_desktop {

/// Native docks, of which X is told nothing but one area for the whole desktop, as well as X's.
class KWinDockAreas final : public DockAreas {
 public:
  explicit KWinDockAreas(std::unique_ptr<DockAreas> x) : x_(std::move(x)) {}

  void watch(std::function<void()> changed) override;
  std::vector<PixelRect> freeAreas(const std::vector<PixelRect>& monitors) const override;

 private:
  const std::unique_ptr<DockAreas> x_;
  std::shared_ptr<WorkAreaWatch> areas_;  // made when they are first watched
};

}  // namespace vistrel::platform::linux_desktop
