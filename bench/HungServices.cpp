#include <benchmark/benchmark.h>
#include <chrono>
#include <csignal>
#include <string>
#include <vector>

#include "tests/desktop/RunningVistrel.h"
#include "tests/support/DeafServices.h"
#include "tests/support/XWindows.h"

namespace vistrel::bench {
namespace {

using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

/// How long the picker takes to the screen from the program's start, and how long the program takes
/// to its end from SIGTERM, in that environment.
void startAndEnd(benchmark::State& state, const testbed::PrivateDisplay& display,
                 const std::vector<std::string>& environment) {
  const testbed::XConnection connection(display.name());
  for (auto iteration : state) {
    const auto started = Clock::now();
    testbed::RunningVistrel vistrel(connection, testbed::RunningVistrel::command({}, environment));
    vistrel.picker();
    state.counters["picker_ms"] = millisecondsSince(started);
    const auto asked = Clock::now();
    vistrel.process().sendSignal(SIGTERM);
    vistrel.process().waitForEnd();
    state.counters["end_ms"] = millisecondsSince(asked);
  }
}

void besideNothingHung(benchmark::State& state) {
  const testbed::PrivateDisplay display;
  startAndEnd(state, display, display.environment());
}

void besideDeafSessionBus(benchmark::State& state) {
  const testbed::PrivateDisplay display;
  const testbed::DeafListener bus(testbed::DeafListener::Connecting::succeeds);
  startAndEnd(state, display, display.environmentOnBus(bus.address()));
}

void besideDeafService(benchmark::State& state, const std::string& name) {
  const testbed::PrivateDisplay display;
  const testbed::DeafService service(display, name);
  startAndEnd(state, display, display.environment());
}

void besideDeafAccessibilityService(benchmark::State& state) {
  besideDeafService(state, "org.a11y.Bus");
}

void besideDeafGlobalMenu(benchmark::State& state) {
  besideDeafService(state, "com.canonical.AppMenu.Registrar");
}

void besideDeafSessionManager(benchmark::State& state) {
  const testbed::PrivateDisplay display;
  const testbed::DeafListener manager(testbed::DeafListener::Connecting::succeeds);
  auto environment = display.environment();
  environment.push_back("SESSION_MANAGER=local/:" + manager.path());
  startAndEnd(state, display, environment);
}

BENCHMARK(besideNothingHung)->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(besideDeafSessionBus)->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(besideDeafAccessibilityService)->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(besideDeafGlobalMenu)->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(besideDeafSessionManager)->Iterations(3)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vistrel::bench
