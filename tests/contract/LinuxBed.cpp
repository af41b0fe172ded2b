#include <QCoreApplication>
#include <QTimer>
#include <stdexcept>
#include <unistd.h>

#include "platform/Application.h"
#include "platform/Factory.h"
#include "platform/Screen.h"
#include "tests/contract/ContractBed.h"
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

testbed::Quadrants quadrants(const Quadrants& colors) {
  const auto rgb = [](PixelBGRA color) { return Rgb{color.red, color.green, color.blue}; };
  return {rgb(colors[0]), rgb(colors[1]), rgb(colors[2]), rgb(colors[3])};
}

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

/// One for all tests of a process. The toolkit keeps the first session bus that it finds for the
/// whole process, and Qt 6.4 aborts when something is to be watched on a bus that has gone.
const testbed::PrivateDisplay& sharedDisplay() {
  static const testbed::PrivateDisplay display(
      {.server = testbed::DisplayServer::growable,
       .variables = {"QT_SCREEN_SCALE_FACTORS=left=1;right=2"}});
  return display;
}

/// The real backend on a private display with a window manager.
class LinuxBed : public ContractBed {
 public:
  LinuxBed() : connection_(display_.name()), backend_(start()), installation_(*backend_) {
    wakeUp_.start(5);
  }
  ~LinuxBed() override {
    // The program's own way out: what is still queued runs, threads end.
    backend_->application().terminate();
    backend_->application().run();
    if (hasTwoScreens_) {
      for (const char* monitor : {"left", "right"}) testbed::Monitors(connection_).remove(monitor);
    }
  }

  platform::Backend& backend() override { return *backend_; }
  std::unique_ptr<SourceWindow> openSource(const SourceOptions& options) override {
    return std::make_unique<LinuxSource>(display_, options);
  }
  bool turnUntil(const std::function<bool()>& condition) override {
    const auto end = std::chrono::steady_clock::now() + testbed::generousDeadline;
    while (!condition()) {
      if (std::chrono::steady_clock::now() >= end) return false;
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
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
  std::unique_ptr<platform::Backend> start() {
    static char program[] = "contract";
    static char* arguments[] = {program, nullptr};
    display_.adoptEnvironment();
    auto [backend, failure] = platform::makeBackend(1, arguments, platform::Instances::any);
    if (!backend) throw std::runtime_error(failure);
    return std::move(backend);
  }

  /// The one window of this process that is on screen.
  std::optional<xcb_window_t> shownWindow() const {
    for (const xcb_window_t window : testbed::windowsOfProcess(connection_, ::getpid())) {
      if (testbed::isViewable(connection_, window)) return window;
    }
    return std::nullopt;
  }

  const testbed::PrivateDisplay& display_ = sharedDisplay();
  const testbed::XConnection connection_;
  const std::unique_ptr<platform::Backend> backend_;
  const platform::BackendInstallation installation_;
  bool hasTwoScreens_ = false;
  QTimer wakeUp_;  // conditions may also depend on what happens outside the event loop
};

}  // namespace

std::unique_ptr<ContractBed> makeContractBed() { return std::make_unique<LinuxBed>(); }

}  // namespace vistrel::contract
