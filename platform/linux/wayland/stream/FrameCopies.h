#pragma once

#include <memory>
#include <vector>

#include "platform/linux/wayland/stream/StreamFrame.h"

namespace vistrel::platform::linux_desktop {

/// Memory for copies of frames, for streams whose own memory has to go back at once. It is used
/// again once nobody holds the copy any more. One thread.
class FrameCopies {
 public:
  FrameCopies();
  FrameCopies(const FrameCopies&) = delete;
  FrameCopies& operator=(const FrameCopies&) = delete;
  ~FrameCopies();

  /// With the same crop, without what is around it. Null where there is no memory for it.
  std::shared_ptr<const StreamFrame> copyOf(const StreamFrame& frame);

 private:
  class Room;

  std::vector<std::shared_ptr<Room>> rooms_;
};

}  // namespace vistrel::platform::linux_desktop
