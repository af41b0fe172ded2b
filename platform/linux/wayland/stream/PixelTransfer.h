#pragma once

#include <memory>
#include <vector>
#include <xcb/shm.h>

#include "platform/linux/wayland/stream/PipeWireStream.h"
#include "platform/linux/x11/picture/Drawing.h"

namespace vistrel::platform::linux_desktop {

/// Brings pixels of streams into pixmaps of the X server, which reads them out of the stream's own
/// memory; where it cannot have that (MIT-SHM before 1.2), they are sent.
class PixelTransfer {
 public:
  explicit PixelTransfer(Connection& connection);

  /// Copies `area` of the frame's crop to the same place of `target`, which is of depth 24. The
  /// server may still read the frame when this returns.
  void put(const StreamFrame& frame, const PixelRect& area, const Pixmap& target);

 private:
  using Segment = Resource<xcb_shm_detach>;
  struct Attached {
    std::weak_ptr<const SharedMemory> memory;
    Segment segment;  // none where the server refused
  };

  /// XCB_NONE where the server cannot read that memory.
  xcb_shm_seg_t segmentOf(const std::shared_ptr<const SharedMemory>& memory);
  Segment attach(const SharedMemory& memory);

  Connection& connection_;
  bool offersSegments_ = false;
  std::vector<Attached> attached_;
  GContext context_;
};

}  // namespace vistrel::platform::linux_desktop
