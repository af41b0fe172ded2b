#include <benchmark/benchmark.h>
#include <chrono>
#include <functional>
#include <thread>

#include "bench/MirroredSession.h"
#include "bench/ThreadWaits.h"

namespace vistrel::bench {
namespace {

using testbed::Rgb;
using testbed::TestWindow;

constexpr const char* mainThread = "vistrel";

/// Paints one frame of a source; the frames differ.
using Animation = std::function<void(TestWindow&, int frame)>;

Rgb colourOf(int frame) {
  return {static_cast<std::uint8_t>(80 + frame * 7 % 160),
          static_cast<std::uint8_t>(80 + frame * 11 % 160), 120};
}

void rest(TestWindow&, int) {}

void paintTwoPercent(TestWindow& source, int frame) {
  // 200 × 200 of 1900 × 1050.
  source.paint({850, 425, 200, 200}, colourOf(frame));
}

void paintAll(TestWindow& source, int frame) {
  source.paint({0, 0, MirroredSession::sourceArea.width, MirroredSession::sourceArea.height},
               colourOf(frame));
}

/// Milliseconds of processor time per second, 1000 being one core, of the program and of the
/// display server, and how often a second the program's main thread wakes, while the sources change
/// 30 times a second. The server's figure holds what drawing the sources costs it; the run with no
/// mirror shows how much that is.
void captureCost(benchmark::State& state, const Animation& animation) {
  using Clock = std::chrono::steady_clock;
  constexpr int frames = 150;
  constexpr std::chrono::duration<double> interval{1.0 / 30};
  MirroredSession session(static_cast<int>(state.range(0)));
  for (auto iteration : state) {
    const double client = session.clientSeconds();
    const double server = session.serverSeconds();
    const long waits = threadWaits(session.clientPid()).at(mainThread);
    const auto start = Clock::now();
    for (int frame = 0; frame < frames; ++frame) {
      for (std::size_t i = 0; i < session.size(); ++i) {
        animation(session.source(i), frame);
      }
      std::this_thread::sleep_until(start + (frame + 1) * interval);
    }
    const double elapsed = std::chrono::duration<double>(Clock::now() - start).count();
    state.counters["client_ms_per_s"] = (session.clientSeconds() - client) / elapsed * 1000;
    state.counters["main_wakes_per_s"] =
        static_cast<double>(threadWaits(session.clientPid()).at(mainThread) - waits) / elapsed;
    state.counters["server_ms_per_s"] = (session.serverSeconds() - server) / elapsed * 1000;
  }
}

void mirrors(benchmark::internal::Benchmark* benchmark) {
  // The most that the picker shows without scrolling.
  constexpr int manyMirrors = 12;
  benchmark->Arg(1)->Arg(4)->Arg(manyMirrors)->Iterations(1)->Unit(benchmark::kMillisecond);
}

BENCHMARK_CAPTURE(captureCost, staticSource, rest)->Apply(mirrors)->Arg(64);
BENCHMARK_CAPTURE(captureCost, smallChange, paintTwoPercent)->Apply(mirrors);
BENCHMARK_CAPTURE(captureCost, fullRepaint, paintAll)->Apply(mirrors);

}  // namespace
}  // namespace vistrel::bench
