#include "platform/linux/x11/stream/X11PanelWindows.h"

#include <utility>

#include "platform/linux/DisplayLoss.h"
#include "platform/linux/x11/panel/FloatingPanel.h"
#include "platform/linux/x11/stream/MirrorWorker.h"
#include "platform/linux/x11/stream/X11PanelSurface.h"

namespace vistrel::platform::linux_desktop {

X11PanelWindows::X11PanelWindows(std::shared_ptr<Connection> connection,
                                 std::shared_ptr<SerialQueue> queue)
    : connection_(std::move(connection)),
      queue_(std::move(queue)),
      floating_(std::make_shared<Floating>()) {
  // The queue's connection is there all the time, so it notices that the display is gone. It is
  // opened before the toolkit opens its own: libXau 1.0.9 must not be entered twice.
  asyncAndWait(*queue_, [this] {
    if (const auto worker = MirrorWorker::of(queue_)) worker->setOnLost(endProgramDisplayLost);
  });
}

std::unique_ptr<PanelSurface> X11PanelWindows::makeSurface(std::uint32_t window) {
  return std::make_unique<X11PanelSurface>(window, queue_);
}

void X11PanelWindows::makeFloating(std::uint32_t window) {
  linux_desktop::makeFloating(*connection_, window);
  queue_->async([floating = floating_, weak = std::weak_ptr(queue_), window] {
    auto& panels = floating->panels;
    const auto queue = weak.lock();
    if (!panels && queue) {
      panels = FloatingPanels::on(queue);
      if (panels) panels->setForeignFullScreen(floating->isForeignFullScreenActive);
    }
    if (panels) panels->add(window);
  });
}

std::function<void(bool)> X11PanelWindows::foreignFullScreenFollower() {
  return [floating = floating_, weak = std::weak_ptr(queue_)](bool isActive) {
    const auto queue = weak.lock();
    if (!queue) return;
    queue->async([floating, isActive] {
      floating->isForeignFullScreenActive = isActive;
      if (floating->panels) floating->panels->setForeignFullScreen(isActive);
    });
  };
}

void X11PanelWindows::keepOffLists(std::uint32_t window) {
  linux_desktop::keepOffLists(*connection_, window);
}

}  // namespace vistrel::platform::linux_desktop
