#pragma once

#include <memory>
#include <utility>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/session/DockAreas.h"
#include "platform/linux/x11/monitors/DockWatch.h"

namespace vistrel::platform::linux_desktop {

/// By the struts of docks and the manager's work area.
class X11DockAreas final : public DockAreas {
 public:
  /// Watches on `queue`, for as long as that runs.
  explicit X11DockAreas(std::shared_ptr<SerialQueue> queue) : queue_(std::move(queue)) {}

  void watch(std::function<void()> changed) override {
    docks_ = DockWatch::on(queue_, std::move(changed));
  }
  std::vector<PixelRect> freeAreas(const std::vector<PixelRect>& monitors) const override {
    return linux_desktop::freeAreas(monitors, docks_ ? docks_->reservations() : Reservations{});
  }

 private:
  const std::shared_ptr<SerialQueue> queue_;
  std::shared_ptr<DockWatch> docks_;  // made when they are first watched
};

}  // namespace vistrel::platform::linux_desktop
