#pragma once

#include <memory>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/session/ProgramInstance.h"
#include "platform/linux/x11/instance/InstanceClaim.h"

namespace vistrel::platform::linux_desktop {

/// The instance that has the claim of its display, or one of several.
class X11ProgramInstance final : public ProgramInstance {
 public:
  /// Answers those who ask on `queue`, for as long as that runs. Without a claim nobody asks.
  X11ProgramInstance(std::shared_ptr<InstanceClaim> claim, std::shared_ptr<SerialQueue> queue);

  void whenStartedAgain(std::function<void(std::uint32_t time)> show) override;
  void letOthersStart() override;

 private:
  const std::shared_ptr<InstanceClaim> claim_;
  const std::shared_ptr<SerialQueue> queue_;
};

}  // namespace vistrel::platform::linux_desktop
