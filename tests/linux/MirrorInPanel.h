#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/x11/CaptureStream.h"
#include "platform/linux/x11/X11PanelSurface.h"
#include "tests/linux/DrawnPictures.h"
#include "tests/support/PrivateDisplay.h"
#include "tests/support/ScreenReader.h"
#include "tests/support/TestWindow.h"

namespace vistrel::platform::linux_desktop {

/// A window mirrored in a panel that shows nothing but the picture. Main thread.
class MirrorInPanel {
 public:
  struct Options {
    xcb_window_t source;
    /// Above all else, whatever the window manager.
    testbed::Rect panel;
    bool showsCursor = true;
    MediaTime interval{1, 30};
  };
  /// `display` is the one of this process's environment.
  MirrorInPanel(const testbed::PrivateDisplay& display, const Options& options);
  ~MirrorInPanel();

  /// When each frame was handed out or a little later, by the monotonic clock.
  std::vector<double> frames() const { return output_->frames(); }
  /// What the panel shows, once it has been given the newest picture.
  Bitmap shown();
  bool eventuallyShows(const Bitmap& expected) {
    return testbed::eventually([&] { return shown() == expected; });
  }
  testbed::TestWindow& panel() { return panel_; }

 private:
  class Output : public StreamOutputHandler {
   public:
    void streamDidOutputSampleBuffer(Stream& stream, const SampleBuffer& sample,
                                     StreamOutputType type) override;
    std::vector<double> frames() const;
    std::shared_ptr<const Image> takeImage();

   private:
    mutable std::mutex mutex_;
    std::vector<double> frames_;          // guarded by mutex_
    std::shared_ptr<const Image> image_;  // guarded by mutex_
  };

  const testbed::Rect area_;
  testbed::XConnection eyes_;
  testbed::TestWindow panel_;
  const std::shared_ptr<Output> output_ = std::make_shared<Output>();
  const std::shared_ptr<SerialQueue> queue_ =
      SerialQueue::make("mirror", QualityOfService::userInteractive);
  X11PanelSurface surface_;
  std::shared_ptr<CaptureStream> stream_;
};

}  // namespace vistrel::platform::linux_desktop
