#pragma once

#include <optional>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/x11/manager/Manager.h"

namespace vistrel::platform::linux_desktop {

/// Until when the operations that one command of a person's is made of may wait for the manager,
/// all of them together. In seconds of the monotonic clock. Main thread.
class CommandDeadline {
 public:
  /// With the operation that comes first in any such command.
  void begin() { deadline_ = monotonicNow() + managersTime; }
  void end() { deadline_.reset(); }
  /// Of the command under way; an operation outside of any is one by itself.
  double get() const { return deadline_.value_or(monotonicNow() + managersTime); }

 private:
  std::optional<double> deadline_;
};

}  // namespace vistrel::platform::linux_desktop
