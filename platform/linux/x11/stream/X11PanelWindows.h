#pragma once

#include <functional>
#include <memory>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/session/PanelWindows.h"
#include "platform/linux/x11/panel/FloatingPanels.h"
#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// Panels as windows of the display server.
class X11PanelWindows final : public PanelWindows {
 public:
  /// Panels are drawn on `queue` until they show a mirror's picture, and kept above full-screen
  /// windows there, for as long as that runs.
  X11PanelWindows(std::shared_ptr<Connection> connection, std::shared_ptr<SerialQueue> queue);

  std::unique_ptr<PanelSurface> makeSurface(std::uint32_t window) override;
  void makeFloating(std::uint32_t window) override;
  std::function<void(bool isActive)> foreignFullScreenFollower() override;
  void keepOffLists(std::uint32_t window) override;

 private:
  /// On the queue.
  struct Floating {
    std::shared_ptr<FloatingPanels> panels;  // made with the first one
    bool isForeignFullScreenActive = false;
  };

  const std::shared_ptr<Connection> connection_;
  const std::shared_ptr<SerialQueue> queue_;
  const std::shared_ptr<Floating> floating_;
};

}  // namespace vistrel::platform::linux_desktop
