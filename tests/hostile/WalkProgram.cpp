// The whole program under random commands of a person, on a private display, against a model of
// what is to be seen (Walk.h): looks for what differs, and for what grows with time.
//
//   build/debug/vistrel-walk                100,000 steps from a seed drawn by lot
//   build/debug/vistrel-walk 5000           5,000 steps
//   build/debug/vistrel-walk 5000 12345     the same from that seed
//
// With VISTREL_TRACE as the program itself.
//
// The exit status is 1 when a defect was found. Under the preset `debug` it also stops at what the
// sanitizers find.

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <random>
#include <string>

#include "platform/linux/SerialQueue.h"
#include "tests/hostile/Walk.h"

namespace {

using namespace vistrel::hostile;

constexpr int stepsBetweenReports = 5'000;

/// What was found; empty for nothing.
std::string walk(int steps, std::uint64_t seed) {
  const char* const trace = std::getenv("VISTREL_TRACE");
  vistrel::testbed::PrivateDisplay display(
      {.server = vistrel::testbed::DisplayServer::growable,
       .variables = {std::string("VISTREL_TRACE=") + (trace == nullptr ? "" : trace)}});
  display.adoptEnvironment();
  Walk walk(display, seed);
  auto defect = walk.goOnceRound();
  if (!defect.empty()) return defect;
  const Footprint before = walk.footprint();
  std::cout << "at first: " << before << std::endl;
  for (int done = 0; done < steps;) {
    const int next = std::min(steps - done, stepsBetweenReports);
    defect = walk.go(next);
    if (!defect.empty()) return defect;
    done += next;
    std::cout << "after " << done << " steps: " << walk.footprint() << std::endl;
  }
  defect = walk.rest();
  if (!defect.empty()) return defect;
  const Footprint after = walk.footprint();
  std::cout << "in the end: " << after << std::endl;
  return hasNotGrown(before, after) ? "" : "it has grown";
}

}  // namespace

int main(int count, char** arguments) {
  const int steps = count > 1 ? std::atoi(arguments[1]) : 100'000;
  const auto seed = count > 2 ? std::strtoull(arguments[2], nullptr, 10) : std::random_device()();
  std::cout << "seed " << seed << std::endl;
  const auto defect = walk(steps, seed);
  std::cout << (defect.empty() ? "nothing found" : defect) << std::endl;
  vistrel::platform::linux_desktop::shutDownSerialQueues();
  return defect.empty() ? EXIT_SUCCESS : EXIT_FAILURE;
}
