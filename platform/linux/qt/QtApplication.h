#pragma once

#include <functional>
#include <memory>

#include "platform/Application.h"
#include "platform/linux/qt/TerminationSignals.h"

namespace vistrel::platform::linux_desktop {

/// The program's life on the toolkit's event loop.
class QtApplication final : public Application {
 public:
  /// `ended` runs once the event loop has, before `run` returns.
  explicit QtApplication(std::function<void()> ended);

  void setActivationPolicy(ActivationPolicy policy) override;
  void setDelegate(std::weak_ptr<ApplicationDelegate> delegate) override;
  void activateIgnoringOtherApps(bool ignoringOtherApps) override;
  void run() override;
  void terminate() override;

 private:
  const std::function<void()> ended_;
  std::weak_ptr<ApplicationDelegate> delegate_;
  bool isTerminated_ = false;
  TerminationSignals signals_;
};

}  // namespace vistrel::platform::linux_desktop
