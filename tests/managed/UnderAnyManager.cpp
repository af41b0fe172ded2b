#include "tests/managed/UnderAnyManager.h"

#include <unistd.h>

namespace vistrel::testbed {

TEST_P(ParkedUnderAnyManager, AWindowIsOutOfTheWayAndComesBackWithAllThatItHad) {
  using enum platform::linux_desktop::SourceSituation;
  auto& situations = *bed_.session().providers().sourceSituations;
  const auto other = open({.title = "Other", .area = {100, 100, 300, 200}});
  const Belongings ofOther = settledBelongingsOf(*other);
  for (const bool decorated : {true, false}) {
    const auto window = open({.area = {300, 250, 400, 300}, .decorated = decorated});
    for (const std::uint32_t gravity : {XCB_GRAVITY_NORTH_WEST, XCB_GRAVITY_STATIC}) {
      SCOPED_TRACE(::testing::Message() << "gravity " << gravity);
      setGravity(*window, gravity);
      const Belongings before = settledBelongingsOf(*window);
      const auto element = bed_.elementOf(window->id());
      const auto home = ParkingBed::positionOf(*element);
      {
        const ParkedWindow parked(bed_, window->id());
        EXPECT_EQ(parked.isOnHiddenDisplay(), GetParam().hasHiddenDisplay);
        EXPECT_EQ(situations.of(window->id()), GetParam().situation);
        if (GetParam().situation == ordinary) {
          EXPECT_TRUE(eventually([&] { return isOutOfSight(*window); })) << window->area();
        } else if (GetParam().situation == parkedBelowOthers) {
          EXPECT_TRUE(isAbove(connection(), other->id(), window->id()));
        }
        EXPECT_EQ(window->area().width, before.area.width);
        EXPECT_EQ(window->area().height, before.area.height);
      }
      // As soon as it can be read.
      EXPECT_EQ(ParkingBed::positionOf(*element), home);
      EXPECT_TRUE(comesBackTo(before, *window));
      EXPECT_EQ(situations.of(window->id()), ordinary);
    }
  }
  EXPECT_EQ(settledBelongingsOf(*other), ofOther);
}

TEST_P(ParkedOnEveryDesktop, AWindowIsDrawnUntilItGoesBackToItsOwn) {
  // i3 4.22 does away with a desktop that nothing is left on.
  const auto other = open();
  const auto window = open();
  const Belongings before = settledBelongingsOf(*window);
  {
    const ParkedWindow parked(bed_, window->id());
    for (const std::uint32_t desktop : {1, 0}) {
      goToDesktop(desktop);
      // Until then it may be there yet.
      awaitManager(connection());
      EXPECT_TRUE(eventually([&] { return isViewable(connection(), window->id()); }));
    }
  }
  EXPECT_TRUE(comesBackTo(before, *window));
}

TEST_P(BroughtToFrontUnderAnyManager, AProgramsWindowsKeepTheirOrder) {
  ManagedSession session(GetParam());
  const auto& connection = session.connection();
  const std::string display = session.display().name();
  const TestWindow first(display, {.title = "First", .area = {300, 250, 400, 300}});
  const TestWindow second(display, {.title = "Second", .area = {350, 300, 400, 300}});
  const TestWindow other(display,
                         {.title = "Other", .area = {400, 350, 400, 300}, .pid = ::getppid()});
  const auto areInOrder = [&](const TestWindow& top, const TestWindow& middle,
                              const TestWindow& bottom) {
    return isAbove(connection, top.id(), middle.id()) &&
           isAbove(connection, middle.id(), bottom.id());
  };
  const auto activate = [&](const TestWindow& window) {
    constexpr std::uint32_t byPerson = 2;
    connection.sendToManager(window.id(), "_NET_ACTIVE_WINDOW", {byPerson, 0, 0});
    awaitManager(connection);
  };
  auto& activation = *session.providers().windowActivation;
  for (const auto& [top, bottom] : {std::pair(&second, &first), std::pair(&first, &second)}) {
    activate(*bottom);
    activate(*top);
    activate(other);
    ASSERT_TRUE(eventually([&] { return areInOrder(other, *top, *bottom); }));
    EXPECT_TRUE(activation.activateWindows(::getpid()));
    EXPECT_TRUE(eventually([&] { return areInOrder(*top, *bottom, other); }));
    EXPECT_TRUE(eventually([&] { return focusedWindow(connection) == top->id(); }));
  }
}

}  // namespace vistrel::testbed
