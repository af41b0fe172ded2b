#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <thread>
#include <vector>

#include "bench/MirroredSession.h"
#include "tests/support/ScreenReader.h"

namespace vistrel::bench {
namespace {

using testbed::Rgb;

double percentile(std::vector<double> values, double share) {
  std::ranges::sort(values);
  return values[static_cast<std::size_t>(share * static_cast<double>(values.size() - 1))];
}

/// Milliseconds from the moment at which the source has changed to the moment at which the panel's
/// pixel has, as another program sees it. Changes come 10 times a second, so that none waits for
/// the pace of 30 frames.
void latency(benchmark::State& state) {
  using Clock = std::chrono::steady_clock;
  constexpr int changes = 100;
  constexpr std::chrono::milliseconds pause{100};
  MirroredSession session(1);
  const testbed::ScreenReader screen(session.connection());
  const testbed::Point middle = session.panel(0).contents().centre();
  for (auto iteration : state) {
    std::vector<double> milliseconds;
    for (int change = 0; change < changes; ++change) {
      const Rgb colour = change % 2 == 0 ? testbed::red : testbed::blue;
      session.source(0).show(testbed::Quadrants::uniform(colour));
      const auto changed = Clock::now();
      while (!similar(screen.pixel(middle), colour, 6)) {
      }
      const auto seen = Clock::now();
      milliseconds.push_back(std::chrono::duration<double, std::milli>(seen - changed).count());
      std::this_thread::sleep_until(seen + pause);
    }
    state.counters["median_ms"] = percentile(milliseconds, 0.5);
    state.counters["p95_ms"] = percentile(milliseconds, 0.95);
  }
}

/// A colour for each of some hundred changes that follow one another.
Rgb colourOf(int change) {
  constexpr int shades = 16;
  constexpr int step = 15;
  return {static_cast<std::uint8_t>(15 + change % shades * step),
          static_cast<std::uint8_t>(15 + change / shades % shades * step), 120};
}

/// How old what the panel shows is at the moment at which another program first sees it, and the
/// time from one picture to the next, for a source that changes steadily at state.range(0) a
/// second.
void steadyLatency(benchmark::State& state) {
  using Clock = std::chrono::steady_clock;
  using Milliseconds = std::chrono::duration<double, std::milli>;
  constexpr int changes = 250;
  const std::chrono::duration<double> period{1.0 / static_cast<double>(state.range(0))};
  MirroredSession session(1);
  const testbed::ScreenReader screen(session.connection());
  const testbed::Point middle = session.panel(0).contents().centre();
  for (auto iteration : state) {
    std::vector<Clock::time_point> changed;
    std::vector<double> ages;
    std::vector<double> steps;
    int shown = -1;
    auto shownAt = Clock::now();
    const auto start = Clock::now();
    while (changed.size() < changes) {
      const auto next = static_cast<int>(changed.size());
      if (Clock::now() >= start + next * period) {
        session.source(0).paint({850, 425, 200, 200}, colourOf(next));
        changed.push_back(Clock::now());
      }
      const Rgb seen = screen.pixel(middle);
      int newest = static_cast<int>(changed.size()) - 1;
      while (newest > shown && !similar(seen, colourOf(newest), 6)) --newest;
      if (newest == shown) continue;
      const auto now = Clock::now();
      if (shown >= 0) steps.push_back(Milliseconds(now - shownAt).count());
      ages.push_back(Milliseconds(now - changed[static_cast<std::size_t>(newest)]).count());
      shown = newest;
      shownAt = now;
    }
    state.counters["age_median_ms"] = percentile(ages, 0.5);
    state.counters["age_p95_ms"] = percentile(ages, 0.95);
    state.counters["step_p5_ms"] = percentile(steps, 0.05);
    state.counters["step_median_ms"] = percentile(steps, 0.5);
    state.counters["step_p95_ms"] = percentile(steps, 0.95);
  }
}

BENCHMARK(latency)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(steadyLatency)
    ->Arg(24)
    ->Arg(30)
    ->Arg(50)
    ->Arg(60)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vistrel::bench
