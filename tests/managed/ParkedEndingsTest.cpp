#include <csignal>
#include <unistd.h>

#include "tests/managed/ParkingPrograms.h"

namespace vistrel::testbed {
namespace {

class ParkedThroughEndings : public ParkedByAProgram {};

TEST_P(ParkedThroughEndings, AKillAtAnyStepIsMadeGoodByTheGuard) {
  const auto window = openTied();
  const Belongings before = settledBelongingsOf(*window);
  const std::string monitorsBefore = monitors();
  const auto steps = stepsOf(*window);
  ASSERT_TRUE(isAsBefore(before, monitorsBefore, *window));
  ASSERT_GE(steps.size(), 12u);
  for (std::size_t i = 0; i < steps.size(); ++i) {
    SCOPED_TRACE(steps[i]);
    const auto program = start(*window, {"park", "restore"}, Guard::present, i + 1);
    const auto ending = program->waitForEnd();
    ASSERT_TRUE(ending.has_value());
    EXPECT_EQ(ending->signal, SIGKILL);
    // One that comes before the guard has been started is left to a start.
    if (program->standardOutput().find("guard started") == std::string::npos) {
      startAnother();
    }
    ASSERT_TRUE(isAsBefore(before, monitorsBefore, *window));
  }
  EXPECT_TRUE(eventually([&] { return guards().empty(); }));
}

TEST_P(ParkedThroughEndings, AKillAtAnyStepIsMadeGoodByTheNextStartWhereThereIsNoGuard) {
  const auto window = openTied();
  const Belongings before = settledBelongingsOf(*window);
  const std::string monitorsBefore = monitors();
  const std::size_t count = stepsOf(*window).size();
  for (std::size_t i = 1; i <= count; ++i) {
    const auto program = start(*window, {"park", "restore"}, Guard::missing, i);
    ASSERT_TRUE(program->waitForEnd().has_value());
    SCOPED_TRACE(program->standardOutput());
    startAnother();
    ASSERT_TRUE(isAsBefore(before, monitorsBefore, *window));
  }
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

INSTANTIATE_TEST_SUITE_P(Places, ParkedThroughEndings,
                         ::testing::Values(ParkingPlace{"GrowableWithOpenbox",
                                                        DisplayServer::growable,
                                                        WindowManager::openbox, true},
                                           ParkingPlace{"FixedWithOpenbox", DisplayServer::fixed,
                                                        WindowManager::openbox, false}),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace vistrel::testbed
