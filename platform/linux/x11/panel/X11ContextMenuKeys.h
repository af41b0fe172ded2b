#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/session/ContextMenuKeys.h"
#include "platform/linux/x11/panel/MenuKeys.h"

namespace vistrel::platform::linux_desktop {

/// By grabbing the keys on a queue that knows of their presses at once.
class X11ContextMenuKeys final : public ContextMenuKeys {
 public:
  /// Works on `queue` for as long as that runs. Outlives the main queue's blocks.
  explicit X11ContextMenuKeys(std::shared_ptr<SerialQueue> queue) : queue_(std::move(queue)) {}

  void take(std::function<void()> pressed) override;
  void release() override;

 private:
  const std::shared_ptr<SerialQueue> queue_;
  std::shared_ptr<MenuKeys> keys_;  // made when they are first taken
  std::function<void()> pressed_;   // null while they are not
};

}  // namespace vistrel::platform::linux_desktop
