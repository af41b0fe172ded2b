#pragma once

#include <memory>
#include <optional>

#include "platform/linux/wayland/stream/PipeWireStream.h"
#include "platform/linux/wayland/stream/PixelTransfer.h"
#include "platform/linux/wayland/stream/ShadowMargins.h"
#include "platform/linux/wayland/stream/StreamOffer.h"
#include "platform/linux/x11/source/CaptureSource.h"

namespace vistrel::platform::linux_desktop {

/// A native window of a Wayland session as a source: what the compositor streams of it. The newest
/// frame is looked at where it has been copied to, until one is taken over; then what has changed
/// since is brought into the picture. Where PipeWire is lost, the
/// picture stays what it is, and goes on once there is PipeWire again.
class PipeWireSource final : public CaptureSource {
 public:
  /// Null when there is no such window, as far as that is known at once.
  static std::unique_ptr<CaptureSource> open(const CapturingMirror& mirror, WindowID window,
                                             StreamRequest request);

  WindowID window() const override { return window_; }
  void rest() override;
  void renew() override;
  void handle(const xcb_generic_event_t& /*event*/) override {}
  void refresh() override;
  void setSeen(bool isSeen) override;

  bool isGone() const override { return isGone_; }
  bool hasRoom() const override { return hasRoom_; }
  /// From its first frame on.
  bool isViewable() const override;
  bool hasChanges() const override { return hasNewFrame_; }
  bool takeLoss() override { return false; }
  bool isAboutToTellOfLoss() override { return false; }
  const std::shared_ptr<const LivePicture>& picture() const override { return picture_; }
  void askForChanges() override;
  void takeFrameOver() override;
  PictureChanges takeChanges() override { return std::exchange(changes_, {}); }
  bool visitSampleGrid(int rows, int columns, const std::function<bool(PixelBGRA)>& visit) override;

  bool takePointerNews() override { return std::exchange(hasPointerNews_, false); }
  /// Streams tell of its moves.
  bool isPointerFollowed() const override { return false; }
  void askForPointer() override { isPointerAsked_ = true; }
  bool isPointerAsked() const override { return isPointerAsked_; }
  CursorMark pointerMark() override;

 private:
  PipeWireSource(const CapturingMirror& mirror, WindowID window, StreamRequest request);

  /// Asks for a stream; false where nobody is there to be asked.
  bool ask(StreamRequest::Occasion occasion);
  void askAgain();
  void askAgainAfter(double seconds);
  /// Whoever streams has answered, or has ended the stream.
  void answered();
  /// Something has come from PipeWire.
  void arrived();
  void lookAgain() const;
  void receive(StreamFrame frame);
  void streamEnded();
  void giveUp();
  void resume();
  /// Where the newest frame differs from the picture; all of it where that is of another window or
  /// part. `frame` is the newest.
  std::vector<PixelRect> differencesOf(const StreamFrame& frame) const;
  /// Calls it on the queue while this lives, at that moment of the monotonic clock.
  void callAt(double seconds, void (PipeWireSource::*what)());

  const std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
  Connection& connection_;
  const std::function<void()> look_;
  const std::weak_ptr<SerialQueue> queue_;
  const WindowID window_;
  const StreamRequest request_;
  ShadowMargins shadow_;
  std::unique_ptr<StreamOffer> offered_;    // null while it is not asked for
  std::unique_ptr<PipeWireStream> stream_;  // null before there is a node
  PixelTransfer transfer_;
  std::shared_ptr<const LivePicture> picture_;
  const std::shared_ptr<FrameCopy> copy_ = std::make_shared<FrameCopy>();
  std::optional<StreamFrame> newest_;    // none before the first one
  std::optional<StreamFrame> pictured_;  // when that was brought into the picture; none before
  PictureChanges changes_;
  std::shared_ptr<const PointerImage> pointerImage_;  // that `pointerLevels_` are of
  std::shared_ptr<const std::vector<Canvas>> pointerLevels_;
  int failures_ = 0;              // streams in a row that have ended before their first frame
  bool hasLostPipeWire_ = false;  // since the last frame
  bool hasFrameOfStream_ = false;
  bool hasNewFrame_ = false;
  bool hasPointerNews_ = false;
  bool isPointerAsked_ = false;
  bool isGone_ = false;
  bool hasRoom_ = true;
  bool isSeen_ = true;
  bool isResting_ = false;
};

}  // namespace vistrel::platform::linux_desktop
