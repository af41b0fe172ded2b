#pragma once

#include <string>
#include <vector>

#include "platform/linux/PixelRect.h"

namespace vistrel::platform::linux_desktop {

/// A monitor by the session's word.
struct NamedMonitor {
  std::string name;
  /// Of the root window.
  PixelRect pixels;

  friend bool operator==(const NamedMonitor&, const NamedMonitor&) = default;
};

/// Where the monitors lie, to the pixel. How many of those make a point is the toolkit's to say.
class Monitors {
 public:
  virtual ~Monitors() = default;

  /// As of now; none where the session does not tell. Waits for the answer. Main thread.
  virtual std::vector<NamedMonitor> list() = 0;
};

}  // namespace vistrel::platform::linux_desktop
