#include <benchmark/benchmark.h>
#include <chrono>
#include <csignal>

#include "platform/linux/x11/monitors/X11Displays.h"
#include "platform/linux/x11/parking/ParkedWindows.h"
#include "tests/support/PrivateDisplay.h"
#include "tests/support/TestWindow.h"

namespace vistrel::bench {
namespace {

namespace x11 = platform::linux_desktop;

/// How long the command that parks a window keeps the main thread: the window is found, a hidden
/// display is made, and the window is moved there.
void park(benchmark::State& state, bool managerHangs) {
  const testbed::PrivateDisplay display({.server = testbed::DisplayServer::growable});
  display.adoptEnvironment();
  const testbed::TestWindow source(display.name(), {.area = {300, 250, 400, 300}});
  const auto layout = std::make_shared<x11::SharedScreenLayout>();
  layout->set(x11::ScreenLayout({{{0, 0, 1280, 1024}, 1}}));
  const std::shared_ptr<x11::Connection> connection = x11::Connection::open();
  const auto command = std::make_shared<x11::CommandDeadline>();
  for (auto iteration : state) {
    x11::X11VirtualDisplays displays(connection, layout, command);
    x11::ParkedWindows parked(connection, layout, command);
    if (managerHangs) kill(display.windowManagerPid(), SIGSTOP);
    const auto start = std::chrono::steady_clock::now();
    parked.positionOf(source.id());
    displays.createDisplay({.maxPixelsWide = 1280, .maxPixelsHigh = 1024});
    parked.move(source.id(), {1290, 10});
    state.SetIterationTime(
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    kill(display.windowManagerPid(), SIGCONT);
  }
}

void parking(benchmark::State& state) { park(state, false); }
void parkingBesideHungManager(benchmark::State& state) { park(state, true); }

BENCHMARK(parking)->Iterations(3)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(parkingBesideHungManager)->Iterations(3)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vistrel::bench
