#include <benchmark/benchmark.h>
#include <chrono>
#include <thread>

#include "bench/MirroredSession.h"
#include "bench/ThreadWaits.h"

namespace vistrel::bench {
namespace {

using namespace std::chrono_literals;

/// How often a second each of the program's threads wakes while nothing happens, by their names;
/// those that do not are left out.
void countWakes(benchmark::State& state, const MirroredSession& session) {
  // What a start leaves behind: threads that end, a list that is asked for once more.
  constexpr auto untilAtRest = 8s;
  constexpr auto counted = 20s;
  std::this_thread::sleep_for(untilAtRest);
  for (auto iteration : state) {
    const auto before = threadWaits(session.clientPid());
    std::this_thread::sleep_for(counted);
    for (const auto& [name, waits] : threadWaits(session.clientPid())) {
      const auto former = before.find(name);
      const auto wakes = waits - (former == before.end() ? 0 : former->second);
      if (wakes > 0) state.counters[name] = static_cast<double>(wakes) / counted.count();
    }
  }
}

/// With the picker on the screen and so many mirrors of resting sources.
void idleWakes(benchmark::State& state) {
  const MirroredSession session(static_cast<int>(state.range(0)));
  countWakes(state, session);
}

/// The same while the pointer rests over a mirrored source.
void idleWakesUnderThePointer(benchmark::State& state) {
  const MirroredSession session(1);
  constexpr testbed::Point besidePanelAndPicker{1850, 100};
  testbed::InputDriver(session.connection()).moveTo(besidePanelAndPicker);
  countWakes(state, session);
}

BENCHMARK(idleWakes)->Arg(0)->Arg(1)->Arg(16)->Iterations(1)->Unit(benchmark::kSecond);
BENCHMARK(idleWakesUnderThePointer)->Iterations(1)->Unit(benchmark::kSecond);

}  // namespace
}  // namespace vistrel::bench
