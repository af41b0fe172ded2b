// Hunts defects for as long as it is let: random hostile programs around the window list and some
// mirrors, on a private display (see Fuzzer.h).
//
//   build/release/vistrel-fuzz                     one seed after another, until it is interrupted
//   build/release/vistrel-fuzz 300                 for 300 seconds
//   build/release/vistrel-fuzz 300 12345           the same, from seed 12345 on
//   build/release/vistrel-fuzz 0 12345 40000       seed 12345 alone, 40,000 rounds of it
//
// Each seed runs on a display of its own. Its number is written before it runs, so that one that
// crashes can be run again by the last form; the exit status is 1 once a defect was found. Built
// under the preset `debug` it also stops at what the sanitizers find.

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <random>
#include <string>

#include "platform/linux/SerialQueue.h"
#include "tests/hostile/Fuzzer.h"

namespace {

using vistrel::hostile::Fuzzer;
using Clock = std::chrono::steady_clock;

constexpr int roundsPerSeed = 20000;

/// Whether the seed ran without a defect.
bool runs(std::uint64_t seed, int rounds) {
  std::cout << "seed " << seed << ": " << std::flush;
  const vistrel::testbed::PrivateDisplay display(
      {.windowManager = vistrel::testbed::WindowManager::none});
  display.adoptEnvironment();
  Fuzzer fuzzer(display, seed);
  auto defect = fuzzer.run(rounds);
  if (defect.empty()) defect = fuzzer.finish();
  std::cout << fuzzer.rounds() << " rounds, " << fuzzer.listings() << " listings, "
            << fuzzer.samples() << " frames; " << (defect.empty() ? "nothing found" : defect)
            << std::endl;
  return defect.empty();
}

}  // namespace

int main(int count, char** arguments) {
  const double seconds = count > 1 ? std::strtod(arguments[1], nullptr) : -1;
  auto seed = count > 2 ? std::strtoull(arguments[2], nullptr, 10) : std::random_device()();
  const int rounds = count > 3 ? std::atoi(arguments[3]) : roundsPerSeed;
  const auto start = Clock::now();
  const auto hasTime = [&] {
    return seconds < 0 || std::chrono::duration<double>(Clock::now() - start).count() < seconds;
  };
  bool isSound = true;
  do {
    isSound = runs(seed++, rounds);
  } while (isSound && hasTime());
  vistrel::platform::linux_desktop::shutDownSerialQueues();
  return isSound ? EXIT_SUCCESS : EXIT_FAILURE;
}
