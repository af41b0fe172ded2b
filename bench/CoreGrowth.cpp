#include <benchmark/benchmark.h>
#include <memory>
#include <string>

#include "catalogue/WindowMirrorManager.h"
#include "mirror/BlankTest.h"
#include "platform/Menu.h"
#include "platform/simulated/SimulatedBackend.h"
#include "platform/simulated/SimulatedFrames.h"

namespace vistrel::bench {
namespace {

using platform::ShareableWindow;
using platform::WindowID;

/// A desktop without a display, on which as many windows are open as a benchmark asks for: each run
/// is followed by one of twice as many, so that growth shows.
class CrowdedDesktop {
 public:
  explicit CrowdedDesktop(const benchmark::State& state) {
    for (std::int64_t i = 0; i < state.range(0); ++i) {
      windows_.push_back(std::make_shared<const ShareableWindow>(window(i)));
    }
  }

  WindowMirrorManager& manager() { return *manager_; }
  const WindowMirrorManager::Windows& windows() const { return windows_; }

  void mirrorAll() {
    for (const auto& window : windows_) {
      desktop_.screenCapture().openWindow(*window);
      manager_->mirror(window);
    }
    desktop_.turnMainQueue();
  }

 private:
  /// In no order, of some twenty applications, and one in eight not worth listing.
  static ShareableWindow window(std::int64_t i) {
    constexpr std::int64_t scattering = 7919;
    const std::string number = std::to_string(i * scattering % 10007);
    return {.windowID = static_cast<WindowID>(i + 1),
            .title = i % 8 == 0 ? "" : "Document " + number,
            .frame = platform::rect(static_cast<double>(i % 1900), static_cast<double>(i % 1000),
                                    1000, 500),
            .owningApplication = std::make_shared<platform::SharedApplication>(
                platform::SharedApplication{"Application " + std::to_string(i % 20), 99}),
            .isOnScreen = true,
            .windowLayer = 0};
  }

  platform::simulated::SimulatedBackend desktop_;
  const std::shared_ptr<WindowMirrorManager> manager_ = WindowMirrorManager::make();
  WindowMirrorManager::Windows windows_;
};

void filteredWindows(benchmark::State& state) {
  CrowdedDesktop desktop(state);
  for (auto iteration : state) {
    benchmark::DoNotOptimize(desktop.manager().filteredWindows(desktop.windows()));
  }
}

void snap(benchmark::State& state) {
  CrowdedDesktop desktop(state);
  desktop.mirrorAll();
  const auto dragged = desktop.manager().mirrors().begin()->second;
  for (auto iteration : state) {
    benchmark::DoNotOptimize(desktop.manager().snap(platform::rect(333, 222, 340, 196), *dragged));
  }
}

void menuOfWindows(benchmark::State& state) {
  CrowdedDesktop desktop(state);
  platform::Menu menu("Mirror Window");
  for (auto iteration : state) desktop.manager().populatePicker(menu, desktop.windows());
}

/// Of a frame that many pixels wide: as many are looked at, however large it is.
void blankTest(benchmark::State& state) {
  const auto frame = platform::simulated::blackPixels(state.range(0), state.range(0) * 9 / 16);
  for (auto iteration : state) benchmark::DoNotOptimize(isMostlyBlank(*frame));
}

BENCHMARK(filteredWindows)
    ->Name("core/filteredWindows")
    ->Arg(10000)
    ->Arg(20000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(snap)->Name("core/snap")->Arg(500)->Arg(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(menuOfWindows)
    ->Name("core/menuOfWindows")
    ->Arg(1000)
    ->Arg(2000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(blankTest)->Name("core/blankTest")->Arg(1920)->Arg(3840)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace vistrel::bench
