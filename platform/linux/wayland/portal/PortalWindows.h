#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/Guarded.h"
#include "platform/linux/wayland/portal/PickedWindows.h"

namespace vistrel::platform::linux_desktop {

/// Picked windows for everybody else: who picks them, who lists and who captures. They live on a
/// queue of their own. Any thread.
class PortalWindows : public std::enable_shared_from_this<PortalWindows> {
 public:
  /// `longestIdle` in seconds.
  explicit PortalWindows(std::shared_ptr<const SharedScreenLayout> layout,
                         double longestIdle = PickedWindows::usualIdle);

  /// Asks the portal what it offers; `changed` hears of that, on the windows' queue, whenever it
  /// changes. Once.
  void askPortal(std::function<void(PickingOffer offer)> changed);
  /// Has a person pick a window; `picked` is called on the windows' queue.
  void pick(std::string parentWindow, PickedWindows::Picked picked);
  /// In the order in which they were picked: those that are shared at the moment, and where all are
  /// asked for those too that may be again.
  std::vector<WindowRecord> records(ListedWindows listed) const;
  /// How one of them is asked for, for a mirror on `queue`.
  StreamRequest request(const std::shared_ptr<SerialQueue>& queue, WindowID window);

 private:
  class Offer;
  struct Listed {
    std::vector<WindowRecord> shared;
    std::vector<WindowRecord> all;
  };

  std::unique_ptr<StreamOffer> stream(const std::shared_ptr<SerialQueue>& queue, WindowID window,
                                      StreamRequest::Occasion occasion);
  /// Runs `work` with the windows, on their queue.
  template <class Work>
  void withWindows(Work work) const;

  const std::shared_ptr<SerialQueue> queue_;
  const std::shared_ptr<Guarded<Listed>> listed_ = std::make_shared<Guarded<Listed>>();
  const std::shared_ptr<Guarded<std::function<void(PickingOffer)>>> offerChanged_ =
      std::make_shared<Guarded<std::function<void(PickingOffer)>>>();
  std::atomic<int> streams_ = 0;  // so far
};

}  // namespace vistrel::platform::linux_desktop
