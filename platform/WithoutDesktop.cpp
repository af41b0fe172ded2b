#include "platform/WithoutDesktop.h"

#include <chrono>
#include <cstdlib>
#include <thread>
#include <utility>

#include "platform/Application.h"
#include "platform/Menu.h"

namespace vistrel::platform {

namespace {

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

/// Events never come.
class EventlessApplication final : public Application {
 public:
  explicit EventlessApplication(DispatchBackend& clock) : clock_(clock) {}

  void setActivationPolicy(ActivationPolicy) override {}
  void finishLaunching() override {}
  void sendNextEvent(Date until) override {
    const double seconds = until.timeIntervalSince(clock_.now());
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
  }
  void setDelegate(std::weak_ptr<ApplicationDelegate>) override { std::abort(); }
  void activateIgnoringOtherApps(bool) override { std::abort(); }
  void setMainMenu(std::shared_ptr<Menu>) override { std::abort(); }
  void setWindowsMenu(std::shared_ptr<Menu>) override { std::abort(); }
  void hide() override { std::abort(); }
  void run() override { std::abort(); }
  void terminate() override { std::abort(); }

 private:
  DispatchBackend& clock_;
};

class BackendWithoutDesktop final : public Backend {
 public:
  BackendWithoutDesktop(std::unique_ptr<DispatchBackend> dispatch,
                        std::unique_ptr<VirtualDisplayBackend> virtualDisplays,
                        std::unique_ptr<StandardErrorBackend> standardError)
      : dispatch_(std::move(dispatch)),
        virtualDisplays_(std::move(virtualDisplays)),
        standardError_(std::move(standardError)) {}

  DispatchBackend& dispatch() override { return *dispatch_; }
  WindowBackend& windows() override { return windows_; }
  DisplayBackend& displays() override { return displays_; }
  VirtualDisplayBackend& virtualDisplays() override { return *virtualDisplays_; }
  StandardErrorBackend& standardError() override { return *standardError_; }
  Application& application() override { return application_; }
  ScreenCaptureBackend& screenCapture() override { std::abort(); }
  WorkspaceBackend& workspace() override { std::abort(); }
  AccessibilityBackend& accessibility() override { std::abort(); }

 private:
  const std::unique_ptr<DispatchBackend> dispatch_;
  const std::unique_ptr<VirtualDisplayBackend> virtualDisplays_;
  const std::unique_ptr<StandardErrorBackend> standardError_;
  NoScreens windows_;
  NoDisplays displays_;
  EventlessApplication application_{*dispatch_};
};

}  // namespace

std::unique_ptr<Backend> makeBackendWithoutDesktop(
    std::unique_ptr<DispatchBackend> dispatch,
    std::unique_ptr<VirtualDisplayBackend> virtualDisplays,
    std::unique_ptr<StandardErrorBackend> standardError) {
  return std::make_unique<BackendWithoutDesktop>(std::move(dispatch), std::move(virtualDisplays),
                                                 std::move(standardError));
}

}  // namespace vistrel::platform
