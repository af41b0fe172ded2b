#include "platform/linux/x11/instance/X11ProgramInstance.h"

#include <utility>

namespace vistrel::platform::linux_desktop {

X11ProgramInstance::X11ProgramInstance(std::shared_ptr<InstanceClaim> claim,
                                       std::shared_ptr<SerialQueue> queue)
    : claim_(std::move(claim)), queue_(std::move(queue)) {
  if (claim_) asyncAndWait(*queue_, [this] { claim_->serveOn(*queue_); });
}

void X11ProgramInstance::whenStartedAgain(std::function<void(std::uint32_t time)> show) {
  if (!claim_) return;
  queue_->async([claim = claim_, serving = std::weak_ptr(queue_), show = std::move(show)] {
    claim->setShow([serving, show](xcb_timestamp_t time, std::function<void()> shown) {
      mainQueue().async([serving, show, time, shown = std::move(shown)] {
        show(time);
        if (const auto queue = serving.lock()) queue->async(shown);
      });
    });
  });
}

void X11ProgramInstance::letOthersStart() {
  if (claim_) asyncAndWait(*queue_, [this] { claim_->giveUp(); });
}

}  // namespace vistrel::platform::linux_desktop
