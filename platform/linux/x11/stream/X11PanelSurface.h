#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "platform/linux/PanelSurface.h"
#include "platform/linux/SerialQueue.h"
#include "platform/linux/x11/panel/AwaitedChromes.h"

namespace vistrel::platform::linux_desktop {

class MirrorWorker;

/// Draws a panel's window on one queue at a time: on `homeQueue` until a mirror's picture is shown,
/// from then on where that mirror keeps its picture. Main thread.
class X11PanelSurface : public PanelSurface {
 public:
  X11PanelSurface(std::uint32_t window, std::shared_ptr<SerialQueue> homeQueue);
  ~X11PanelSurface() override;

  void setChrome(PanelChrome chrome, std::function<void()> shown) override;
  std::shared_ptr<const PanelChrome> chrome() const override;
  void setContents(std::shared_ptr<const Image> image) override;
  std::optional<std::uint32_t> source() const override { return source_; }
  void detach() override;

 private:
  void moveTo(std::shared_ptr<SerialQueue> queue);
  void leaveQueue();
  void post(std::function<void(MirrorWorker&)> work) const;

  const std::uint32_t window_;
  std::shared_ptr<SerialQueue> queue_;   // null once detached
  std::optional<std::uint32_t> source_;  // whose picture `queue_` has been told last to show
  std::optional<AwaitedChrome> chrome_;
  std::shared_ptr<const bool> attached_ = std::make_shared<const bool>(true);  // null once detached
};

}  // namespace vistrel::platform::linux_desktop
