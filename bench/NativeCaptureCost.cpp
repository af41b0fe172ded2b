#include <benchmark/benchmark.h>
#include <chrono>
#include <functional>
#include <thread>

#include "bench/MirroredNative.h"

namespace vistrel::bench {
namespace {

using testbed::NativeWindow;
using testbed::Rgb;
using Panel = MirroredNative::Panel;

/// Paints one frame of a source; the frames differ.
using Animation = std::function<void(NativeWindow&, int frame)>;

Rgb colourOf(int frame) {
  return {static_cast<std::uint8_t>(80 + frame * 7 % 160),
          static_cast<std::uint8_t>(80 + frame * 11 % 160), 120};
}

void rest(NativeWindow&, int) {}

void paintLittle(NativeWindow& source, int frame) {
  source.paint({850, 425, 64, 24}, colourOf(frame));
}

void paintAll(NativeWindow& source, int frame) {
  source.show(testbed::Quadrants::uniform(colourOf(frame)));
}

/// Milliseconds of processor time per second, 1000 being one core, and per drawing of the panel, of
/// the program, of XWayland and of KWin, while a native source changes 30 times a second, or as
/// often as KWin comes round to it: it renders without a graphics card here. The runs without a
/// mirror show how much of that drawing the source costs by itself.
void nativeCaptureCost(benchmark::State& state, const Animation& animation, Panel panel) {
  using Clock = std::chrono::steady_clock;
  constexpr int frames = 150;
  constexpr std::chrono::duration<double> interval{1.0 / 30};
  MirroredNative session(panel);
  for (auto iteration : state) {
    const auto before = session.processorTime();
    const int drawnBefore = session.drawnFrames();
    const auto start = Clock::now();
    for (int frame = 0; frame < frames; ++frame) {
      animation(session.source(), frame);
      std::this_thread::sleep_until(start + (frame + 1) * interval);
    }
    const double elapsed = std::chrono::duration<double>(Clock::now() - start).count();
    const auto used = session.processorTime();
    const int drawn = session.drawnFrames() - drawnBefore;
    const auto tell = [&](const std::string& name, double seconds) {
      state.counters[name + "_ms_per_s"] = seconds / elapsed * 1000;
      if (panel == Panel::open && drawn > 0)
        state.counters[name + "_ms_per_drawn"] = seconds / drawn * 1000;
    };
    tell("client", used.client - before.client);
    tell("xwayland", used.xwayland - before.xwayland);
    tell("kwin", used.kwin - before.kwin);
    state.counters["painted_per_s"] = frames / elapsed;
    state.counters["drawn_per_s"] = drawn / elapsed;
  }
}

void once(benchmark::internal::Benchmark* benchmark) {
  benchmark->Iterations(1)->Unit(benchmark::kMillisecond);
}

BENCHMARK_CAPTURE(nativeCaptureCost, still_alone, rest, Panel::none)->Apply(once);
BENCHMARK_CAPTURE(nativeCaptureCost, still, rest, Panel::open)->Apply(once);
BENCHMARK_CAPTURE(nativeCaptureCost, smallChange_alone, paintLittle, Panel::none)->Apply(once);
BENCHMARK_CAPTURE(nativeCaptureCost, smallChange, paintLittle, Panel::open)->Apply(once);
BENCHMARK_CAPTURE(nativeCaptureCost, fullRepaint_alone, paintAll, Panel::none)->Apply(once);
BENCHMARK_CAPTURE(nativeCaptureCost, fullRepaint, paintAll, Panel::open)->Apply(once);
BENCHMARK_CAPTURE(nativeCaptureCost, fullRepaint_rolledUp, paintAll, Panel::rolledUp)->Apply(once);

}  // namespace
}  // namespace vistrel::bench
