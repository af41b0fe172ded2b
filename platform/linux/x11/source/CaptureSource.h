#pragma once

#include <functional>
#include <memory>
#include <xcb/xcb.h>

#include "platform/ScreenCapture.h"
#include "platform/linux/SerialQueue.h"
#include "platform/linux/x11/picture/LivePicture.h"
#include "platform/linux/x11/picture/PictureStore.h"
#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// How far apart frames are at least that nobody sees, in seconds: they tell that the window
/// changes, and what a person finds when they look again.
inline constexpr double unseenInterval = 0.5;

/// A window that is being captured: its picture in the display server, what changes in it, and the
/// pointer over it. Lives on its mirror's queue, and not longer than the mirror's connection.
class CaptureSource {
 public:
  CaptureSource() = default;
  CaptureSource(const CaptureSource&) = delete;
  CaptureSource& operator=(const CaptureSource&) = delete;
  virtual ~CaptureSource() = default;

  virtual WindowID window() const = 0;
  /// Nobody takes frames of it from now on; `renew` may follow.
  virtual void rest() = 0;
  /// Takes the window's picture anew, as if it had just been opened.
  virtual void renew() = 0;
  /// Hears of every event of the mirror's connection.
  virtual void handle(const xcb_generic_event_t& event) = 0;
  /// Follows what has been told. To be called once all events have been handled.
  virtual void refresh() = 0;
  /// Whether a person can see the mirror's picture at all. While they cannot, a source whose frames
  /// cost others something may come with fewer: with as many as show that the window changes.
  virtual void setSeen(bool /*isSeen*/) {}

  virtual bool isGone() const = 0;
  /// False where the server had no memory for the window's picture; `refresh` tries again.
  virtual bool hasRoom() const = 0;
  /// Whether the window is drawn into the picture at all as it stands.
  virtual bool isViewable() const = 0;
  /// Whether something has changed since `askForChanges`, as far as is known.
  virtual bool hasChanges() const = 0;
  /// Whether the window has lost some of its parts since this was last asked.
  virtual bool takeLoss() = 0;
  /// Whether what is yet to be handled tells of that.
  virtual bool isAboutToTellOfLoss() = 0;
  /// The window's picture; null until the window has been viewable. Another one after each change
  /// of size.
  virtual const std::shared_ptr<const LivePicture>& picture() const = 0;
  /// Takes notice of what has changed so far. The answer need not be waited for before it is
  /// needed.
  virtual void askForChanges() = 0;
  /// Brings the frame handed out last into the picture, where it has not come there by itself.
  virtual void takeFrameOver() {}
  /// What had changed in the picture when that was last asked for, and is not taken yet.
  virtual PictureChanges takeChanges() = 0;
  /// As `PixelBuffer::visitSampleGrid`, of the frame handed out last.
  virtual bool visitSampleGrid(int rows, int columns,
                               const std::function<bool(PixelBGRA)>& visit) = 0;

  /// Whether the pointer may have come or gone, as far as is known, since this was last asked.
  virtual bool takePointerNews() = 0;
  /// Whether the pointer is over the window and nothing tells of its moves, so that its place has
  /// to be asked for.
  virtual bool isPointerFollowed() const = 0;
  /// The answer need not be waited for before it is needed.
  virtual void askForPointer() = 0;
  /// Whether the place that was asked for has not been taken yet.
  virtual bool isPointerAsked() const = 0;
  /// Where the pointer lay over the picture when it was last asked for, or lies now; empty while it
  /// is elsewhere or over a window that covers this one.
  virtual CursorMark pointerMark() = 0;
};

/// The mirror that a source is for.
struct CapturingMirror {
  Connection& connection;
  /// Has the mirror look at its sources again. For what comes in otherwise than over the
  /// connection; may outlive the mirror. On its queue.
  std::function<void()> look;
  /// Not null; to be held weakly.
  std::shared_ptr<SerialQueue> queue;
};

/// Opens a window as a source; null when there is no such window. On the mirror's queue.
using OpenSource =
    std::function<std::unique_ptr<CaptureSource>(const CapturingMirror& mirror, WindowID window)>;

}  // namespace vistrel::platform::linux_desktop
