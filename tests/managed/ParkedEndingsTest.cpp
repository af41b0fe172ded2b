#include <csignal>
#include <unistd.h>

#include "tests/managed/ParkingPrograms.h"

namespace vistrel::testbed {
namespace {

class ParkedThroughEndings : public ParkedByAProgram {};

TEST_P(ParkedThroughEndings, AKillAtAnyStepIsMadeGoodByTheGuard) {
  expectKillsMadeGood(Guard::present);
}

TEST_P(ParkedThroughEndings, AKillAtAnyStepIsMadeGoodByTheNextStartWhereThereIsNoGuard) {
  expectKillsMadeGood(Guard::missing);
}

TEST_P(ParkedThroughEndings, TheGuardActsAtOnceWhateverEndsTheProgram) {
  const auto window = openTied();
  const Belongings before = settledBelongingsOf(*window);
  const std::string monitorsBefore = monitors();
  for (const int signal : {SIGTERM, SIGKILL, SIGSEGV}) {
    const auto program = startParked(*window, Guard::present);
    program->sendSignal(signal);
    ASSERT_TRUE(isAsBefore(before, monitorsBefore, *window)) << "signal " << signal;
  }
  {
    const auto program = startParked(*window, Guard::present);
    const auto record = connection().numbers(window->id(), "_VISTREL_PARKED");
    ASSERT_GE(record.size(), 2u);
    xcb_kill_client(connection().get(), record[1]);
    connection().sync();
    ASSERT_TRUE(comesBackTo(before, *window)) << "without its connection";
    program->sendSignal(SIGKILL);
    ASSERT_TRUE(isAsBefore(before, monitorsBefore, *window));
  }
  EXPECT_TRUE(eventually([&] { return guards().empty(); }));
}

TEST_P(ParkedThroughEndings, TheNextStartDoesTheWorkOfAGuardThatWasKilledToo) {
  const auto window = openTied();
  const Belongings before = settledBelongingsOf(*window);
  const std::string monitorsBefore = monitors();
  const auto program = startParked(*window, Guard::present);
  const auto running = guards();
  ASSERT_EQ(running.size(), 1u);
  EXPECT_NE(getsid(running.front()), getsid(program->pid()));
  EXPECT_NE(getpgid(running.front()), getpgid(program->pid()));
  ::kill(running.front(), SIGKILL);
  ASSERT_TRUE(eventually([&] { return guards().empty(); }));
  program->sendSignal(SIGKILL);
  ASSERT_TRUE(program->waitForEnd().has_value());
  awaitManager(connection());
  EXPECT_TRUE(isOutOfSight(*window));
  startAnother();
  EXPECT_TRUE(isAsBefore(before, monitorsBefore, *window));
}

TEST_P(ParkedThroughEndings, NobodyTouchesWhatALivingProgramHasParked) {
  const auto window = open();
  const auto other = open({.title = "Other", .area = {100, 100, 300, 200}});
  const Belongings before = settledBelongingsOf(*window);
  const Belongings ofOther = settledBelongingsOf(*other);
  const auto program = startParked(*window, Guard::present);
  const Belongings parked = settledBelongingsOf(*window);
  const auto neighbour = startParked(*other, Guard::present);
  startAnother();
  neighbour->sendSignal(SIGKILL);
  ASSERT_TRUE(comesBackTo(ofOther, *other));
  EXPECT_TRUE(eventually([&] { return guards().size() == 1; }));
  EXPECT_EQ(settledBelongingsOf(*window), parked);
  program->sendSignal(SIGKILL);
  EXPECT_TRUE(comesBackTo(before, *window));
}

TEST_P(ParkedThroughEndings, OnTwoDisplaysEachHasItsOwn) {
  const auto window = open();
  const Belongings before = settledBelongingsOf(*window);
  const PrivateDisplay otherDisplay({.server = GetParam().server});
  const TestWindow other(otherDisplay.name(), {.area = {300, 250, 400, 300}});
  const Rect home = other.area();
  const auto program = startParked(*window, Guard::present);
  const auto neighbour = start(other, {"park", "pause"}, Guard::present, 0, &otherDisplay);
  ASSERT_TRUE(eventually([&] { return isOutOfSight(other); }));
  program->sendSignal(SIGKILL);
  EXPECT_TRUE(comesBackTo(before, *window));
  EXPECT_TRUE(isOutOfSight(other));
  neighbour->sendSignal(SIGKILL);
  EXPECT_TRUE(eventually([&] { return other.area() == home; }));
}

INSTANTIATE_TEST_SUITE_P(Places, ParkedThroughEndings,
                         ::testing::Values(ParkingPlace{"GrowableWithOpenbox",
                                                        DisplayServer::growable,
                                                        WindowManager::openbox, true},
                                           ParkingPlace{"FixedWithOpenbox", DisplayServer::fixed,
                                                        WindowManager::openbox, false}),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace vistrel::testbed
