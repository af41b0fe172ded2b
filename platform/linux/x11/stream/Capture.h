#pragma once

#include <cassert>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "platform/ScreenCapture.h"
#include "platform/linux/CurrentThread.h"
#include "platform/linux/x11/source/CaptureSource.h"
#include "platform/linux/x11/source/FramePacing.h"
#include "platform/linux/x11/source/LossPause.h"

namespace vistrel::platform::linux_desktop {

class MirrorWorker;

/// One running stream on its queue: decides when a frame of its source is due, hands it out, and
/// lets the mirror take it over.
class Capture : public std::enable_shared_from_this<Capture> {
 public:
  struct Receiver {
    std::function<void(const SampleBuffer&)> sample;
    /// Once, when the window or the connection has gone.
    std::function<void(const Error&)> stopped;
  };

  Capture(MirrorWorker& worker, std::unique_ptr<CaptureSource> source,
          const StreamConfiguration& configuration, Receiver receiver);

  void handle(const xcb_generic_event_t& event);
  /// Once all events have been handled: hands out a frame if one is due, else has the worker come
  /// back when it is.
  void proceed();
  void setConfiguration(const StreamConfiguration& configuration);
  /// The connection is lost.
  void fail(const Error& error);

  /// Ends the capture, which keeps quiet from now on.
  std::unique_ptr<CaptureSource> takeSource() { return std::move(source_); }

  const StreamConfiguration& configuration() const { return configuration_; }
  const Receiver& receiver() const { return receiver_; }
  CaptureSource& source() { return *source_; }
  const std::shared_ptr<const LivePicture>& picture() const { return source_->picture(); }
  /// Whether the picture still is what was taken over last; asks the server.
  bool isUnchangedSinceCommit();
  /// Takes the picture over as it is now.
  std::shared_ptr<const Image> commit();
  /// As `PixelBuffer::visitSampleGrid`.
  bool visitSampleGrid(int rows, int columns, const std::function<bool(PixelBGRA)>& visit) {
    assert(thread_.isCurrent());
    return source_->visitSampleGrid(rows, columns, visit);
  }

 private:
  /// Takes notice of whether a person can see the mirror's picture.
  void followSight();
  /// Whether the picture has changed since the last frame handed out.
  bool hasNews() const { return source_->hasChanges() || owesFrame_; }
  /// Whether the pointer's place is to be looked at although the source has not changed.
  bool isTimeToLook(double now) const;
  /// Takes notice of where the pointer is; answers whether that has changed.
  bool cursorHasMoved();
  void takeAskedCursor();
  void noticeChange(double now);
  void askForChanges();
  void collectChanges();
  void deliver(double now);
  /// Nothing more is done until the server may have got memory.
  void lackRoom(double now);

  const OwnThread thread_;
  MirrorWorker& worker_;
  std::unique_ptr<CaptureSource> source_;
  StreamConfiguration configuration_;
  Receiver receiver_;
  CursorMark cursorMark_;  // as of the last frame handed out
  bool cursorMayHaveMoved_ = true;
  double nextLook_ = 0;  // at a pointer over the source
  double roomLook_ = 0;  // nothing is done before; in the past where there is room
  PictureChanges uncommitted_;
  FramePacing pacing_;
  LossPause lossPause_;
  bool noticedChange_ = false;  // what has changed since the source was asked
  bool owesFrame_ = false;      // there was news that no frame has been handed out for
  bool isSeen_ = true;
  bool ended_ = false;
};

}  // namespace vistrel::platform::linux_desktop
