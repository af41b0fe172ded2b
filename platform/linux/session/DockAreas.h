#pragma once

#include <functional>
#include <vector>

#include "platform/linux/PixelRect.h"

namespace vistrel::platform::linux_desktop {

/// What docks and the like keep free. Pixels of the root window. Main thread.
class DockAreas {
 public:
  virtual ~DockAreas() = default;

  /// From now on calls `changed`, on a thread of its own, whenever it has become something else;
  /// until the queues' threads end. Once only.
  virtual void watch(std::function<void()> changed) = 0;
  /// What docks leave of each monitor, in the same order: all of it until they are watched. Waits
  /// for nobody.
  virtual std::vector<PixelRect> freeAreas(const std::vector<PixelRect>& monitors) const = 0;
};

}  // namespace vistrel::platform::linux_desktop
