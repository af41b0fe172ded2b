#pragma once

#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "platform/ScreenCapture.h"
#include "platform/linux/CurrentThread.h"
#include "platform/linux/SerialQueue.h"
#include "platform/linux/x11/panel/PanelPainter.h"
#include "platform/linux/x11/panel/ScreenSleep.h"
#include "platform/linux/x11/picture/PictureStore.h"
#include "platform/linux/x11/source/CaptureSource.h"
#include "platform/linux/x11/stream/Capture.h"

namespace vistrel::platform::linux_desktop {

/// What a queue has in the display server: its connection, the streams that deliver on it, the
/// picture they had accepted last, and the panels drawn there. Made with the queue's first need and
/// lives as long as the queue, so that a picture outlives its stream. On its queue only.
class MirrorWorker : public std::enable_shared_from_this<MirrorWorker> {
 public:
  /// Null when the display refuses another connection, or would soon refuse others theirs. Takes
  /// over what one with a lost connection has.
  static std::shared_ptr<MirrorWorker> of(const std::shared_ptr<SerialQueue>& queue);
  /// Null when the queue has none yet. Its connection may be lost.
  static std::shared_ptr<MirrorWorker> existingOf(SerialQueue& queue);

  Connection& connection() { return *connection_; }
  /// To be called, instead of going on over another connection, when this one is lost.
  void setOnLost(std::function<void()> onLost) { onLost_ = std::move(onLost); }

  /// Starts capturing for the stream `key`. None when that was done.
  std::optional<Error> startCapture(const void* key, WindowID window, const OpenSource& open,
                                    const StreamConfiguration& configuration,
                                    Capture::Receiver receiver);
  /// Null when the stream is not running.
  Capture* captureOf(const void* key);
  void stopCapture(const void* key);
  /// Serves the connection again at that moment of the monotonic clock.
  void comeBackAt(double seconds);

  /// Takes a frame of `source` over, and paints it where the picture is shown. Null once the queue
  /// is being released, and where the display server has no memory for the picture.
  std::shared_ptr<const Image> commit(WindowID source, std::shared_ptr<const LivePicture> picture,
                                      PictureChanges changes, const CursorMark& cursor);

  /// Whether there is a panel in sight with room for the picture, or is to be one: a panel comes
  /// with the first picture. Nothing is seen while the display sleeps.
  bool isPictureSeen() const;

  void addPanel(xcb_window_t window);
  /// Nothing touches the window any more when this returns.
  void removePanel(xcb_window_t window);
  /// Shows it once the window has room for it.
  void setChrome(xcb_window_t window, AwaitedChrome chrome);
  /// Shows the picture accepted last and each that is from then on, or none.
  void showPicture(xcb_window_t window, bool shows);

  /// Handles what has arrived, and sends what has been drawn.
  void serve();

 private:
  struct Running {
    const void* key;
    OpenSource open;
    std::shared_ptr<Capture> capture;
  };

  MirrorWorker(const std::shared_ptr<SerialQueue>& queue, std::unique_ptr<Connection> connection);

  /// Null when there is no such window.
  std::unique_ptr<CaptureSource> openSource(WindowID window, const OpenSource& open);
  /// Whether the display server has memory for its picture and for the least that is kept of it.
  bool hasRoomFor(const CaptureSource& source);
  /// Null does nothing.
  void release(std::unique_ptr<CaptureSource> source);
  void handle(const xcb_generic_event_t& event);
  void lose();
  void handOverTo(MirrorWorker& heir);
  PanelPainter* panelOf(xcb_window_t window);
  void showNextChrome(PanelPainter& panel);
  void paint(PanelPainter& panel);
  void showAgainAt(double seconds);
  void showAgainAtRest();
  std::vector<PixelSize> pictureSizes(PixelSize source) const;
  const LivePicture* unchangedSource();

  const OwnThread thread_;
  std::weak_ptr<SerialQueue> queue_;
  std::function<void()> onLost_;
  std::unique_ptr<Connection> connection_;
  ScreenSleep sleep_;
  PictureStore store_;
  std::vector<Running> captures_;
  /// The source of the stream that was stopped last. Releasing a covered window would cost what is
  /// covered, until the window is drawn again; and a mirror that is refreshed starts with it again.
  std::unique_ptr<CaptureSource> restingSource_;
  std::list<PanelPainter> panels_;
  std::optional<double> comingBackAt_;
  double lastPaint_ = 0;           // of any panel
  bool showsAgainAtRest_ = false;  // since there was a painting
};

/// The picture that a mirror had accepted when the image was made, or a later one.
class CommittedImage : public Image {
 public:
  CommittedImage(std::shared_ptr<SerialQueue> queue, WindowID source)
      : queue_(std::move(queue)), source_(source) {}
  /// The mirror's queue, where the picture is kept.
  const std::shared_ptr<SerialQueue>& queue() const { return queue_; }
  /// The window that it is a picture of.
  WindowID source() const { return source_; }

 private:
  std::shared_ptr<SerialQueue> queue_;
  WindowID source_;
};

}  // namespace vistrel::platform::linux_desktop
