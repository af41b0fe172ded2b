#pragma once

#include <memory>
#include <string>

#include "platform/linux/session/WindowPicking.h"
#include "platform/linux/wayland/portal/PortalWindows.h"

namespace vistrel::platform::linux_desktop {

/// Picking in the dialog of xdg-desktop-portal.
class PortalWindowPicking final : public WindowPicking {
 public:
  explicit PortalWindowPicking(std::shared_ptr<PortalWindows> windows);

  bool canPickInteractively() const override;
  std::string status() const override;
  void setOnChange(std::function<void()> changed) override;
  void pickInteractively(std::uint32_t parent, Completion completion) override;

 private:
  /// What picking on the windows' queue tells the main thread.
  struct State {
    PickingOffer offer = PickingOffer::asked;
    std::string outcome;  // of the last time
    bool isOpen = false;  // the dialog
    std::function<void()> changed;
  };

  const std::shared_ptr<PortalWindows> windows_;
  const std::shared_ptr<State> state_ = std::make_shared<State>();  // main thread
};

}  // namespace vistrel::platform::linux_desktop
