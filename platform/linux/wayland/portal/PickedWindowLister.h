#pragma once

#include <memory>

#include "platform/linux/session/WindowLister.h"
#include "platform/linux/wayland/portal/PortalWindows.h"

namespace vistrel::platform::linux_desktop {

/// Lists X's windows, and after them those that a person has picked.
class PickedWindowLister final : public WindowLister {
 public:
  PickedWindowLister(std::unique_ptr<WindowLister> x, std::shared_ptr<PortalWindows> picked)
      : x_(std::move(x)), picked_(std::move(picked)) {}

  void request(DesktopWindows desktopWindows, ListedWindows listedWindows,
               ShareableContentCompletion completion) override;

 private:
  const std::unique_ptr<WindowLister> x_;
  const std::shared_ptr<PortalWindows> picked_;
};

}  // namespace vistrel::platform::linux_desktop
