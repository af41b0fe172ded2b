#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/x11/stream/CaptureStream.h"
#include "platform/linux/x11/stream/X11PanelSurface.h"
#include "tests/support/Picture.h"
#include "tests/support/TestWindow.h"
#include "tests/support/XConnection.h"

namespace vistrel::platform::linux_desktop {

/// A mirror as the program has one, without its views: a queue, a stream, and the window of a panel
/// in which every frame is shown, whatever it is, from the first `turn` on. One thread, except for
/// what is said to be its queue's.
class TestMirror {
 public:
  /// What a panel shows is read from the screen; where a compositor shows windows (XWayland), from
  /// the panel's window.
  enum class Panels { onScreen, composited };

  /// Opens the panel's window on the screen. `connection` outlives this object.
  TestMirror(const testbed::XConnection& connection, testbed::Rect panel,
             Panels panels = Panels::onScreen);
  TestMirror(const TestMirror&) = delete;
  TestMirror& operator=(const TestMirror&) = delete;
  ~TestMirror();

  /// Starts mirroring `source`, which need not exist. Does not wait.
  void start(xcb_window_t source, const StreamConfiguration& configuration = usualConfiguration());
  /// The same with a source that is opened so.
  void start(WindowID source, OpenSource open);
  void stop();
  void configure(const StreamConfiguration& configuration);
  /// Gives the panel another size.
  void resizePanel(int width, int height);
  /// Leaves no room for the picture in the panel, until it is resized.
  void rollUp();
  /// The configuration that the program starts with.
  static StreamConfiguration usualConfiguration();

  /// Whether frames are taken over from now on, as they are at first.
  void setAccepting(bool accepts) { events_->accepts = accepts; }
  /// Has that done on the mirror's queue with each frame, before it is taken over. To be called
  /// before the start.
  void doBeforeTaking(std::function<void()> action) { events_->beforeTaking = std::move(action); }
  /// Lets the panel show what has come.
  void turn();
  /// Lets the panel show what another mirror has taken over last.
  void showPictureOf(const TestMirror& other);
  /// Takes the picture out of the panel.
  void takePictureAway();
  /// Whether the panel shows these colours in the quarters of a source of that size.
  bool shows(const testbed::Quadrants& expected, testbed::Rect source);
  /// Whether the stream's last frame has these colours in its quarters.
  bool wasGiven(const testbed::Quadrants& expected) const;
  /// The panel's colour at a place in the picture of a source of that size.
  testbed::Rgb colourAt(double fractionX, double fractionY, testbed::Rect source) const;
  testbed::Picture panelPicture() const;
  xcb_window_t panel() const { return panel_; }

  /// Requests that have been made, and those that were answered.
  int asked() const { return asked_; }
  int answered() const { return events_->answered; }
  /// When each frame was handed out or a little later, by the monotonic clock.
  std::vector<double> frames() const;
  int samples() const { return static_cast<int>(frames().size()); }
  /// How often a stream ended by itself.
  int ends() const { return events_->ends; }
  /// What the last start was answered with; empty for success.
  std::string startFailure() const;

  /// Does it while the mirror's queue does nothing.
  void whileQueueIsHeldUp(const std::function<void()>& action) const;
  /// Waits until the queue has done everything asked of it, and the server with it.
  void settle() const;
  /// The first of the ids that the server gave to the mirror's connection.
  std::uint32_t idBase() const;
  /// Has the server throw the mirror's connection out, as any client may (XKillClient).
  void throwOut();

 private:
  struct Events;

  StreamCompletion counted();
  void start(WindowID source, OpenSource open, const StreamConfiguration& configuration);

  const testbed::XConnection& connection_;
  const xcb_window_t panel_;
  testbed::Rect area_;
  const Panels panels_;
  std::shared_ptr<SerialQueue> queue_;
  std::shared_ptr<Events> events_;
  std::shared_ptr<CaptureStream> stream_;
  std::optional<X11PanelSurface> surface_;
  int asked_ = 0;

  /// What comes from the queue.
  struct Events : StreamOutputHandler, StreamDelegate {
    void streamDidOutputSampleBuffer(Stream& stream, const SampleBuffer& sample,
                                     StreamOutputType type) override;
    void streamDidStopWithError(Stream& stream, const Error& error) override;

    std::atomic<int> answered = 0;
    std::atomic<int> ends = 0;
    std::atomic<bool> accepts = true;
    std::function<void()> beforeTaking = [] {};
    mutable std::mutex mutex;
    std::vector<double> frames;           // guarded by mutex
    std::string startFailure;             // guarded by mutex
    std::shared_ptr<const Image> latest;  // guarded by mutex
    std::vector<PixelBGRA> grid;          // of the last frame; guarded by mutex
  };
};

}  // namespace vistrel::platform::linux_desktop
