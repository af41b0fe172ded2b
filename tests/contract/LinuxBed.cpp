#include <unistd.h>

#include "platform/Screen.h"
#include "tests/contract/BackendBed.h"
#include "tests/support/Monitors.h"
#include "tests/support/PrivateDisplay.h"
#include "tests/support/ScreenReader.h"
#include "tests/support/TestWindow.h"
#include "tests/support/XWindows.h"

namespace vistrel::contract {
namespace {

using platform::PixelBGRA;
using testbed::FrameExtents;
using testbed::Rgb;

/// A window on a connection of its own, as another program has it.
class LinuxSource : public SourceWindow {
 public:
  LinuxSource(const testbed::PrivateDisplay& display, const SourceOptions& options)
      : connection_(display.name()),
        window_(display.name(),
                testbed::TestWindow::Options{
                    .title = options.title,
                    .application = options.application,
                    .area = {100, 100, static_cast<int>(options.size.width),
                             static_cast<int>(options.size.height)},
                    .picture = quadrants(options.colors),
                    // Not this process, whose windows the bed takes for the program's own.
                    .pid = ::getppid()}),
        id_(window_.id()) {}

  platform::WindowID id() const override { return id_; }
  platform::Rect frame() const override {
    const testbed::Rect area = window_.area();
    const FrameExtents around = testbed::frameExtentsOf(connection_, id_).value_or(FrameExtents{});
    return platform::rect(area.x - around.left, area.y - around.top,
                          area.width + around.left + around.right,
                          area.height + around.top + around.bottom);
  }
  void moveBy(double dx, double dy) override {
    const testbed::Rect area = window_.area();
    window_.moveTo({area.x + static_cast<int>(dx), area.y + static_cast<int>(dy)});
  }
  void resize(platform::Size size) override {
    window_.resize(static_cast<int>(size.width), static_cast<int>(size.height));
  }
  void hide() override { window_.minimise(); }
  void show() override { window_.map(); }
  void paint(const Quadrants& colors) override { window_.show(quadrants(colors)); }
  void close() override { window_.destroy(); }

 private:
  const testbed::XConnection connection_;
  testbed::TestWindow window_;
  const platform::WindowID id_;
};

/// One for all tests of a process, which becomes a program of it. The toolkit keeps the first
/// session bus that it finds for the whole process, and Qt 6.4 aborts when something is to be
/// watched on a bus that has gone.
const testbed::PrivateDisplay& sharedDisplay() {
  static const testbed::PrivateDisplay display(
      {.server = testbed::DisplayServer::growable,
       .variables = {"QT_SCREEN_SCALE_FACTORS=left=1;right=2"}});
  display.adoptEnvironment();
  return display;
}

/// The real backend on a private display with a window manager.
class LinuxBed : public BackendBed {
 public:
  explicit LinuxBed(const testbed::PrivateDisplay& display)
      : display_(display), connection_(display.name()) {}
  ~LinuxBed() override {
    if (hasTwoScreens_) {
      for (const char* monitor : {"left", "right"}) testbed::Monitors(connection_).remove(monitor);
    }
  }

  std::unique_ptr<SourceWindow> openSource(const SourceOptions& options) override {
    return std::make_unique<LinuxSource>(display_, options);
  }
  PixelBGRA colorShown(platform::Window& /*window*/, platform::Point fromTopLeft) override {
    const auto window = shownWindow();
    if (!window) return {};
    const testbed::Rect area = testbed::areaOf(connection_, *window).value_or(testbed::Rect{});
    const Rgb color = testbed::ScreenReader(connection_)
                          .pixel({area.x + static_cast<int>(fromTopLeft.x),
                                  area.y + static_cast<int>(fromTopLeft.y)});
    return {color.blue, color.green, color.red, 255};
  }
  PanelFacts factsOf(platform::Panel& /*panel*/) override {
    constexpr std::uint32_t allDesktops = 0xFFFFFFFF;
    const auto window = shownWindow();
    if (!window) return {};
    const testbed::Rect area = testbed::areaOf(connection_, *window).value_or(testbed::Rect{});
    const double screenHeight = platform::screens().front().frame.height();
    return {.isShown = true,
            .frame = platform::rect(area.x, screenHeight - area.y - area.height, area.width,
                                    area.height),
            .floatsAboveOthers = testbed::hasState(connection_, *window, "_NET_WM_STATE_ABOVE"),
            .isOnEveryDesktop = connection_.numbers(*window, "_NET_WM_DESKTOP") ==
                                std::vector<std::uint32_t>{allDesktops},
            .hasKeyboardFocus = testbed::focusedWindow(connection_) == *window};
  }
  void makeTwoScreens() override {
    const testbed::Monitors monitors(connection_);
    monitors.setPrimary("left", {0, 0, 640, 1024});
    monitors.set("right", {640, 0, 640, 1024});
    hasTwoScreens_ = true;
  }

 private:
  /// The one window of this process that is on screen.
  std::optional<xcb_window_t> shownWindow() const {
    for (const xcb_window_t window : testbed::windowsOfProcess(connection_, ::getpid())) {
      if (testbed::isViewable(connection_, window)) return window;
    }
    return std::nullopt;
  }

  const testbed::PrivateDisplay& display_;
  const testbed::XConnection connection_;
  bool hasTwoScreens_ = false;
};

}  // namespace

std::unique_ptr<ContractBed> makeContractBed() {
  return std::make_unique<LinuxBed>(sharedDisplay());
}

}  // namespace vistrel::contract
