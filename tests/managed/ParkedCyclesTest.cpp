#include <array>
#include <csignal>
#include <random>

#include "tests/managed/ParkingPrograms.h"

namespace vistrel::testbed {
namespace {

class ParkedUnderManyManagers : public ParkedByAProgram {};

TEST_P(ParkedUnderManyManagers, AKillAtAnyStepIsMadeGoodByTheGuard) {
  expectKillsMadeGood(Guard::present);
}

TEST_P(ParkedUnderManyManagers, AKillAtAnyStepIsMadeGoodByTheNextStartWhereThereIsNoGuard) {
  expectKillsMadeGood(Guard::missing);
}

INSTANTIATE_TEST_SUITE_P(
    Places, ParkedUnderManyManagers,
    ::testing::Values(
        ParkingPlace{"XorgWithMutter", DisplayServer::xorg, WindowManager::mutter, true},
        ParkingPlace{"FixedWithXfwm4", DisplayServer::fixed, WindowManager::xfwm4, false},
        ParkingPlace{"GrowableWithKwin", DisplayServer::growable, WindowManager::kwin, false},
        ParkingPlace{"FixedWithMarco", DisplayServer::fixed, WindowManager::marco, false},
        ParkingPlace{"GrowableWithFluxbox", DisplayServer::growable, WindowManager::fluxbox,
                     false}),
    [](const auto& test) { return test.param.name; });

class ParkedAgainAndAgain : public ParkedByAProgram {
 protected:
  std::size_t upTo(std::size_t most) {
    return std::uniform_int_distribution<std::size_t>(0, most)(random_);
  }
  /// Has a program park the window and end in one of many ways; whether somebody is left to see to
  /// it.
  bool endSomehow(const TestWindow& window, std::size_t steps) {
    switch (upTo(3)) {
      case 0:
        start(window, {"park", "restore"}, Guard::present)->waitForEnd();
        return true;
      case 1: {
        const auto program =
            start(window, {"park", "restore"}, Guard::present, 1 + upTo(steps - 1));
        program->waitForEnd();
        return program->standardOutput().find("guard started") != std::string::npos;
      }
      case 2:
        start(window, {"park", "restore"}, Guard::missing, 1 + upTo(steps - 1))->waitForEnd();
        return false;
      default: {
        const auto program = startParked(window, Guard::present);
        const bool isGuardKilled = upTo(1) == 0;
        for (const pid_t each : isGuardKilled ? guards() : std::vector<pid_t>()) {
          ::kill(each, SIGKILL);
        }
        program->sendSignal(std::array{SIGTERM, SIGKILL, SIGSEGV, SIGABRT}.at(upTo(3)));
        program->waitForEnd();
        return !isGuardKilled;
      }
    }
  }

 private:
  std::mt19937 random_{20261122};
};

TEST_P(ParkedAgainAndAgain, AWindowIsAsItWasWhateverEndsEachProgram) {
  const auto window = openTied();
  const Belongings before = settledBelongingsOf(*window);
  const std::string monitorsBefore = monitors();
  const std::size_t steps = stepsOf(*window).size();
  for (int cycle = 0; cycle < 200; ++cycle) {
    SCOPED_TRACE(cycle);
    if (!endSomehow(*window, steps)) {
      startAnother();
    }
    ASSERT_TRUE(isAsBefore(before, monitorsBefore, *window));
  }
  EXPECT_TRUE(eventually([&] { return guards().empty(); }));
}

INSTANTIATE_TEST_SUITE_P(Places, ParkedAgainAndAgain,
                         ::testing::Values(ParkingPlace{"GrowableWithOpenbox",
                                                        DisplayServer::growable,
                                                        WindowManager::openbox, true}),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace vistrel::testbed
