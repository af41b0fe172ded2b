#include "platform/linux/X11Desktop.h"

#include <atomic>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

#include "platform/linux/Environment.h"
#include "platform/linux/SerialQueue.h"
#include "platform/linux/x11/instance/InstanceClaim.h"
#include "platform/linux/x11/listing/ShareableContentService.h"
#include "platform/linux/x11/manager/ApplicationActivation.h"
#include "platform/linux/x11/monitors/DockWatch.h"
#include "platform/linux/x11/monitors/X11Displays.h"
#include "platform/linux/x11/panel/FloatingPanel.h"
#include "platform/linux/x11/panel/FullScreenFollower.h"
#include "platform/linux/x11/panel/MenuKeys.h"
#include "platform/linux/x11/parking/X11Accessibility.h"
#include "platform/linux/x11/server/Connection.h"
#include "platform/linux/x11/stream/CaptureStream.h"
#include "platform/linux/x11/stream/MirrorWorker.h"
#include "platform/linux/x11/stream/WindowFrames.h"
#include "platform/linux/x11/stream/X11PanelSurface.h"

namespace vistrel::platform::linux_desktop {
namespace {

std::string displayName() { return environmentVariable("DISPLAY"); }

/// Keeps standard error shut while it lives. For libxcb, which writes there why a display refuses.
class ShutStandardError {
 public:
  ShutStandardError() : kept_(fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0)) {
    const int nothing = open("/dev/null", O_WRONLY | O_CLOEXEC);
    dup2(nothing, STDERR_FILENO);
    close(nothing);
  }
  ShutStandardError(const ShutStandardError&) = delete;
  ShutStandardError& operator=(const ShutStandardError&) = delete;
  ~ShutStandardError() {
    dup2(kept_, STDERR_FILENO);
    close(kept_);
  }

 private:
  int kept_;
};

std::unique_ptr<Connection> openQuietly() {
  const ShutStandardError shut;
  return Connection::open();
}

class XcbDesktop : public X11Desktop {
 public:
  /// Without a claim it is one instance of several.
  XcbDesktop(std::unique_ptr<Connection> connection, std::shared_ptr<InstanceClaim> claim)
      : connection_(std::move(connection)),
        claim_(std::move(claim)),
        panelQueue_(SerialQueue::make("vistrel.panels", QualityOfService::userInteractive)) {
    // The panels' connection is there all the time, so it notices that the display is gone. It is
    // opened before the toolkit opens its own: libXau must not be entered twice.
    asyncAndWait(*panelQueue_, [this] {
      const auto worker = MirrorWorker::of(panelQueue_);
      if (worker) worker->setOnLost([] { endProgramDisplayLost(); });
      if (claim_) claim_->serveOn(*panelQueue_);
    });
    removeAbandonedMonitors(*connection_);
  }

  void whenStartedAgain(std::function<void(std::uint32_t time)> show) override;
  void letOthersStart() override {
    if (claim_) asyncAndWait(*panelQueue_, [this] { claim_->giveUp(); });
  }

  DisplayBackend& displays() override { return displays_; }
  std::shared_ptr<VirtualDisplayServer> virtualDisplays() override { return virtualDisplays_; }
  AccessibilityBackend& accessibility() override { return accessibility_; }

  bool preflightScreenCaptureAccess() override {
    return connection_->extensions().offersCapture && !connection_->isLost();
  }
  // The display asks nobody.
  bool requestScreenCaptureAccess() override { return preflightScreenCaptureAccess(); }

  void getShareableContent(DesktopWindows desktopWindows, ListedWindows listedWindows,
                           ShareableContentCompletion completion) override {
    contentService_.request(desktopWindows, listedWindows, std::move(completion));
  }

  std::shared_ptr<Stream> makeStream(const ContentFilter& filter,
                                     const StreamConfiguration& configuration,
                                     std::weak_ptr<StreamDelegate> delegate) override {
    const auto& window = filter.desktopIndependentWindow;
    return std::make_shared<CaptureStream>(window ? window->windowID : 0, configuration,
                                           std::move(delegate));
  }

  std::shared_ptr<ImageContext> makeImageContext(const ImageContextOptions&) override {
    return std::make_shared<WindowImageContext>();
  }

  void setScreenLayout(ScreenLayout layout) override {
    layout_ = layout;
    contentService_.setScreenLayout(std::move(layout));
  }

  void watchDocks(std::function<void()> changed) override {
    docks_ = DockWatch::on(panelQueue_, std::move(changed));
  }
  std::vector<PixelRect> freeAreas(const std::vector<PixelRect>& monitors) const override {
    return linux_desktop::freeAreas(monitors, docks_ ? docks_->reservations() : Reservations{});
  }

  std::unique_ptr<PanelSurface> makePanelSurface(std::uint32_t window) override {
    return std::make_unique<X11PanelSurface>(window, panelQueue_);
  }

  void markAsFloatingPanel(std::uint32_t window) override;
  void raise(std::uint32_t window) override { linux_desktop::raise(*connection_, window); }

  void takeMenuKeys(std::function<void()> pressed) override;

  bool hasWindows(std::int32_t processID) override {
    return linux_desktop::hasWindows(*connection_, processID);
  }
  bool activateWindows(std::int32_t processID) override {
    return linux_desktop::activateWindows(*connection_, processID);
  }
  void activateWindow(std::uint32_t window, std::uint32_t time) override {
    linux_desktop::activateWindow(*connection_, window, time);
  }

 private:
  /// For requests of the main thread, each of which waits for its answer.
  std::unique_ptr<Connection> connection_;
  const std::shared_ptr<InstanceClaim> claim_;
  std::shared_ptr<SerialQueue> panelQueue_;
  std::shared_ptr<DockWatch> docks_;                 // made when they are first watched
  std::shared_ptr<FullScreenFollower> fullScreens_;  // made with the first panel
  std::shared_ptr<MenuKeys> menuKeys_;               // made when they are first taken
  std::function<void()> menuKeyPressed_;
  ShareableContentService contentService_;
  ScreenLayout layout_;
  std::shared_ptr<X11VirtualDisplays> virtualDisplays_ =
      std::make_shared<X11VirtualDisplays>(*connection_, layout_);
  X11Displays displays_{*connection_, layout_, *virtualDisplays_};
  // Windows go back before the displays go that they are on.
  X11Accessibility accessibility_{*connection_, layout_};
};

void XcbDesktop::whenStartedAgain(std::function<void(std::uint32_t time)> show) {
  if (!claim_) return;
  panelQueue_->async([claim = claim_, panels = std::weak_ptr(panelQueue_), show = std::move(show)] {
    claim->setShow([panels, show](xcb_timestamp_t time, std::function<void()> shown) {
      mainQueue().async([panels, show, time, shown = std::move(shown)] {
        show(time);
        if (const auto queue = panels.lock()) queue->async(shown);
      });
    });
  });
}

void XcbDesktop::takeMenuKeys(std::function<void()> pressed) {
  menuKeyPressed_ = std::move(pressed);
  if (!menuKeys_ && menuKeyPressed_) {
    menuKeys_ = MenuKeys::on(panelQueue_, [this] {
      mainQueue().async([this] {
        if (const auto handler = menuKeyPressed_) handler();
      });
    });
  }
  if (!menuKeys_) return;
  panelQueue_->async([keys = menuKeys_, takes = menuKeyPressed_ != nullptr] {
    if (takes) {
      keys->take();
    } else {
      keys->release();
    }
  });
}

void XcbDesktop::markAsFloatingPanel(std::uint32_t window) {
  makeFloating(*connection_, window);
  if (!fullScreens_) fullScreens_ = FullScreenFollower::on(panelQueue_);
  if (!fullScreens_) return;
  panelQueue_->async([follower = fullScreens_, window] { follower->add(window); });
}

}  // namespace

X11Desktop::OrFailure X11Desktop::connect(Instances instances) {
  if (auto connection = openQuietly()) {
    InstanceClaim::OrShown start;
    if (instances == Instances::one) {
      start = InstanceClaim::take(environmentVariable("DESKTOP_STARTUP_ID"));
    }
    if (start.isShown) return {};
    return {std::make_unique<XcbDesktop>(std::move(connection), std::move(start.claim)), {}};
  }
  const auto name = displayName();
  if (name.empty()) return {nullptr, "vistrel: no display: DISPLAY is not set"};
  return {nullptr, "vistrel: cannot connect to the display \"" + name + "\""};
}

void endProgramDisplayLost() {
  static std::atomic<bool> isEnding = false;
  // Whoever comes second must not cut the first one short.
  while (isEnding.exchange(true)) pause();
  const std::string line =
      "vistrel: the connection to display \"" + displayName() + "\" was lost\n";
  // Nothing is left to do about a line that cannot be written.
  [[maybe_unused]] const auto written = write(STDERR_FILENO, line.data(), line.size());
  _exit(1);
}

}  // namespace vistrel::platform::linux_desktop
