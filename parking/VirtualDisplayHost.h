#pragma once

#include <memory>

#include "parking/VLVirtualDisplay.h"
#include "platform/Displays.h"
#include "platform/Geometry.h"

namespace vistrel {

/// A hidden display, large enough for one window and placed right of the main display. The display
/// goes with this object, at the next turn of the main loop. Main thread.
class VirtualDisplayHost {
 public:
  VirtualDisplayHost(const VirtualDisplayHost&) = delete;
  VirtualDisplayHost& operator=(const VirtualDisplayHost&) = delete;

  /// For a window of that size in points. Null when no display can be made, or when it does not
  /// come to lie right of the main display. Ends the program abnormally when the size is not finite
  /// or the display's would not fit a 32-bit integer.
  static std::unique_ptr<VirtualDisplayHost> make(platform::Size pointSize);

  platform::DisplayID displayID() const { return display_->displayID(); }
  /// Where the display lies. Global display space.
  const platform::Rect& bounds() const { return bounds_; }

 private:
  explicit VirtualDisplayHost(std::unique_ptr<VLVirtualDisplay> display);

  void arrangeOffToTheSide();

  const std::unique_ptr<VLVirtualDisplay> display_;
  platform::Rect bounds_;
};

}  // namespace vistrel
