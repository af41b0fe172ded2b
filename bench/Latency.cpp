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

BENCHMARK(latency)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vistrel::bench
