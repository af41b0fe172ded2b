#pragma once

#include <memory>
#include <optional>

#include "platform/linux/wayland/stream/StreamFrame.h"

namespace vistrel::platform::linux_desktop {

/// The newest frame of a window's streams in memory of our own, so that a stream's buffer goes back
/// as soon as it has come: while one is held, producers lose changes (PipeWire 0.3.65 with KWin
/// 5.27 and mutter 43), be it a window's last. On its streams' queue.
class FrameCopy {
 public:
  FrameCopy();
  FrameCopy(const FrameCopy&) = delete;
  FrameCopy& operator=(const FrameCopy&) = delete;
  ~FrameCopy();

  /// Brings in the pixels of the frame's crop. What is given shows them, and those of the next
  /// frame of the same size after that. None where there is no memory for them.
  std::optional<StreamFrame> update(const StreamFrame& frame);
  /// The tiles that differ from what there was when they were last forgotten, in pixels of the
  /// copy; all of it where that was of another size.
  const ChangedRects& changes() const { return changes_; }
  void forgetChanges() { changes_.clear(); }

 private:
  class Room;

  bool makeRoomFor(PixelSize size);
  void write(const StreamFrame& frame, const PixelRect& area);

  std::unique_ptr<Room> room_;  // null before the first frame
  PixelSize size_;
  ChangedRects changes_;
};

}  // namespace vistrel::platform::linux_desktop
