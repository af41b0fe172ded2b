#include "platform/linux/WithoutDisplay.h"

#include <chrono>
#include <cstdlib>
#include <thread>

#include "platform/Application.h"
#include "platform/Menu.h"
#include "platform/linux/SerialQueue.h"
#include "platform/linux/StandardError.h"

namespace vistrel::platform::linux_desktop {

namespace {

/// A clock and nothing else.
class Clock final : public DispatchBackend {
 public:
  Date now() override { return {monotonicNow()}; }
  DispatchQueue& mainQueue() override { std::abort(); }
  void mainAsyncAfter(double, Block) override { std::abort(); }
  std::shared_ptr<DispatchQueue> makeSerialQueue(std::string, QualityOfService) override {
    std::abort();
  }
  std::shared_ptr<Timer> scheduledTimer(double, bool, Block) override { std::abort(); }
  std::shared_ptr<Semaphore> makeSemaphore(int) override { std::abort(); }
};

/// No screens, so no windows.
class NoScreens final : public WindowBackend {
 public:
  std::vector<Screen> screens() override { return {}; }
  std::optional<Screen> mainScreen() override { return std::nullopt; }
  Window* keyWindow() override { return nullptr; }
  std::unique_ptr<WindowPeer> makePeer(Window&, bool) override { std::abort(); }
  Point mouseLocation() override { std::abort(); }
  Size intrinsicContentSize(const Control&) override { std::abort(); }
  int runModal(const Alert&) override { std::abort(); }
};

/// No display is online.
class NoDisplays final : public DisplayBackend {
 public:
  DisplayID mainDisplayID() override { return 0; }
  Rect displayBounds(DisplayID) override { return {}; }
  std::uint32_t onlineDisplayCount() override { return 0; }
  std::unique_ptr<DisplayConfiguration> beginDisplayConfiguration() override { return nullptr; }
};

/// The system has no classes for virtual displays.
class NoVirtualDisplays final : public VirtualDisplayBackend {
 public:
  std::shared_ptr<RuntimeClass> classNamed(const std::string&) override { return nullptr; }
};

/// Events never come.
class EventlessApplication final : public Application {
 public:
  void setActivationPolicy(ActivationPolicy) override {}
  void finishLaunching() override {}
  void sendNextEvent(Date until) override {
    const double seconds = until.secondsSinceReference - monotonicNow();
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
  }
  void setDelegate(std::weak_ptr<ApplicationDelegate>) override { std::abort(); }
  void activateIgnoringOtherApps(bool) override { std::abort(); }
  void setMainMenu(std::shared_ptr<Menu>) override { std::abort(); }
  void setWindowsMenu(std::shared_ptr<Menu>) override { std::abort(); }
  void hide() override { std::abort(); }
  void run() override { std::abort(); }
  void terminate() override { std::abort(); }
};

class BackendWithoutDisplay final : public Backend {
 public:
  DispatchBackend& dispatch() override { return dispatch_; }
  WindowBackend& windows() override { return windows_; }
  DisplayBackend& displays() override { return displays_; }
  VirtualDisplayBackend& virtualDisplays() override { return virtualDisplays_; }
  Application& application() override { return application_; }
  ScreenCaptureBackend& screenCapture() override { std::abort(); }
  WorkspaceBackend& workspace() override { std::abort(); }
  AccessibilityBackend& accessibility() override { std::abort(); }
  StandardErrorBackend& standardError() override { return standardError_; }

 private:
  Clock dispatch_;
  NoScreens windows_;
  NoDisplays displays_;
  NoVirtualDisplays virtualDisplays_;
  StandardError standardError_;
  EventlessApplication application_;
};

}  // namespace

std::unique_ptr<Backend> makeBackendWithoutDisplay() {
  return std::make_unique<BackendWithoutDisplay>();
}

}  // namespace vistrel::platform::linux_desktop
