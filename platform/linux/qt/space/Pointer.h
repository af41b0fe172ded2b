#pragma once

#include "platform/Geometry.h"
#include "platform/linux/ScreenLayout.h"

namespace vistrel::platform::linux_desktop {

/// Where the pointer is in screen space; while an event is dispatched, where it was at that event.
/// Main thread.
Point pointerLocation(const ScreenLayout& layout);

/// Makes `pointerLocation` answer where `pixel` of the root window is, for as long as this lives.
class DispatchedPosition {
 public:
  explicit DispatchedPosition(Point pixel);
  DispatchedPosition(const DispatchedPosition&) = delete;
  DispatchedPosition& operator=(const DispatchedPosition&) = delete;
  ~DispatchedPosition();

 private:
  const Point pixel_;
  const DispatchedPosition* const outer_;

  friend Point pointerLocation(const ScreenLayout& layout);
};

}  // namespace vistrel::platform::linux_desktop
