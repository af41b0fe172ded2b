#include <csignal>
#include <filesystem>
#include <optional>
#include <ranges>
#include <stdexcept>
#include <utility>

#include "tests/managed/LazyManager.h"
#include "tests/managed/Parked.h"
#include "tests/support/MonitorReport.h"
#include "tests/support/Monitors.h"

namespace vistrel::testbed {
namespace {

constexpr int screenWidth = 1280;
constexpr int screenHeight = 1024;
constexpr std::uint32_t byPerson = 2;
constexpr auto fullScreen = "_NET_WM_STATE_FULLSCREEN";

TEST_P(Parked, AWindowIsOutOfSightAndComesBackExactly) {
  const std::string monitors = monitorReport(bed_.session().display());
  for (const bool decorated : {true, false}) {
    const auto window = open({.area = {300, 250, 400, 300}, .decorated = decorated});
    for (const std::uint32_t gravity :
         {XCB_GRAVITY_NORTH_WEST, XCB_GRAVITY_STATIC, XCB_GRAVITY_SOUTH_EAST}) {
      setGravity(*window, gravity);
      const Belongings before = settledBelongingsOf(*window);
      {
        const ParkedWindow parked(bed_, window->id());
        EXPECT_EQ(parked.isOnHiddenDisplay(), GetParam().hasHiddenDisplay);
        EXPECT_TRUE(eventually([&] { return isOutOfSight(*window); })) << window->area();
        EXPECT_EQ(window->area().width, 400);
        EXPECT_EQ(window->area().height, 300);
      }
      EXPECT_TRUE(comesBackTo(before, *window)) << "gravity " << gravity;
      // What a manager counts a place from shows when something else about the window changes.
      setStates(*window, true, {vertically});
      setStates(*window, false, {vertically});
      EXPECT_TRUE(comesBackTo(before, *window)) << "after all, gravity " << gravity;
    }
  }
  EXPECT_EQ(monitorReport(bed_.session().display()), monitors);
}

TEST_P(Parked, AWindowKeepsItsStatesAndItsSize) {
  // One after the other.
  const std::vector<States> choices[] = {{{horizontally}},
                                         {{vertically}},
                                         {{horizontally, vertically}},
                                         {{fullScreen}},
                                         {{vertically}, {fullScreen}},
                                         {{rolledUp}}};
  for (const auto& steps : choices) {
    const auto window = open();
    const Belongings normal = settledBelongingsOf(*window);
    for (const States& states : steps) {
      setStates(*window, true, states);
    }
    const Belongings before = settledBelongingsOf(*window);
    SCOPED_TRACE(::testing::PrintToString(before));
    {
      const ParkedWindow parked(bed_, window->id());
      EXPECT_TRUE(eventually([&] { return isOutOfSight(*window); })) << window->area();
      EXPECT_EQ(settledBelongingsOf(*window).area.width, before.area.width);
    }
    EXPECT_TRUE(comesBackTo(before, *window));
    for (const States& states : std::ranges::reverse_view(steps)) {
      setStates(*window, false, states);
    }
    EXPECT_TRUE(comesBackTo(normal, *window)) << "without its states";
  }
}

TEST_P(Parked, AWindowThatBecomesFullScreenMeanwhileComesBackAllTheSame) {
  const auto window = open();
  const Belongings before = settledBelongingsOf(*window);
  {
    const ParkedWindow parked(bed_, window->id());
    EXPECT_TRUE(eventually([&] { return isOutOfSight(*window); }));
    setStates(*window, true, {fullScreen});
  }
  EXPECT_TRUE(comesBackTo(before, *window));
}

TEST_P(Parked, AWindowThatItsProgramPutsBackHasAllThatItHadAfterwards) {
  const auto window = open();
  const Belongings before = settledBelongingsOf(*window);
  {
    const ParkedWindow parked(bed_, window->id());
    EXPECT_TRUE(eventually([&] { return isOutOfSight(*window); }));
    window->moveTo({before.area.x, before.area.y});
  }
  EXPECT_TRUE(comesBackTo(before, *window));
}

TEST_P(Parked, AWindowIsThereOnEveryDesktopAndGoesBackToItsOwn) {
  const auto window = open();
  connection().sendToManager(window->id(), "_NET_WM_DESKTOP", {1, byPerson});
  ASSERT_TRUE(eventually([&] { return belongingsOf(*window).desktop == std::vector{1U}; }));
  const Belongings before = settledBelongingsOf(*window);
  {
    const ParkedWindow parked(bed_, window->id());
    EXPECT_TRUE(eventually([&] { return isOutOfSight(*window); }));
    for (const std::uint32_t desktop : {1, 0}) {
      goToDesktop(desktop);
      EXPECT_TRUE(eventually([&] { return isViewable(connection(), window->id()); }));
    }
  }
  EXPECT_TRUE(comesBackTo(before, *window));
}

TEST_P(Parked, AMinimisedWindowStaysMinimised) {
  const auto window = open();
  const Belongings open = settledBelongingsOf(*window);
  window->minimise();
  ASSERT_TRUE(eventually([&] { return belongingsOf(*window).states.contains(minimised); }));
  // There is a manager that shows the window on its way to the taskbar.
  settledBelongingsOf(*window);
  {
    const ParkedWindow parked(bed_, window->id());
    EXPECT_TRUE(settledBelongingsOf(*window).states.contains(minimised));
  }
  connection().sendToManager(window->id(), "_NET_ACTIVE_WINDOW", {byPerson, 0, 0});
  EXPECT_TRUE(comesBackTo(open, *window));
}

TEST_P(Parked, AWindowStaysLive) {
  const auto window = open();
  // The backend has as much patience with a manager as a person, who does not park a window that is
  // only just coming up.
  settledBelongingsOf(*window);
  const auto stream = bed_.session().stream(window->id());
  const ParkedWindow parked(bed_, window->id());
  ASSERT_TRUE(eventually([&] { return isOutOfSight(*window); })) << window->area();
  for (const Rgb colour : {red, green, blue}) {
    window->show(Quadrants::uniform(colour));
    EXPECT_TRUE(eventually([&] {
      const Picture picture = stream->picture();
      return picture.width() > 0 && picture.at(picture.width() / 2, picture.height() / 2) == colour;
    }));
  }
}

TEST_P(Parked, AWindowMayClose) {
  const std::string monitors = monitorReport(bed_.session().display());
  const auto window = open();
  const auto element = bed_.elementOf(window->id());
  {
    const ParkedWindow parked(bed_, window->id());
    window->destroy();
    ASSERT_TRUE(eventually([&] { return !areaOf(connection(), window->id()); }));
    EXPECT_EQ(ParkingBed::positionOf(*element), std::nullopt);
    EXPECT_EQ(ParkingBed::move(*element, {10, 10}), platform::AccessibilityError::invalidElement);
  }
  EXPECT_EQ(monitorReport(bed_.session().display()), monitors);
}

INSTANTIATE_TEST_SUITE_P(
    Places, Parked,
    ::testing::Values(
        ParkingPlace{"GrowableWithOpenbox", DisplayServer::growable, WindowManager::openbox, true},
        ParkingPlace{"XorgWithMutter", DisplayServer::xorg, WindowManager::mutter, true},
        ParkingPlace{"FixedWithOpenbox", DisplayServer::fixed, WindowManager::openbox, false},
        ParkingPlace{"FixedWithXfwm4", DisplayServer::fixed, WindowManager::xfwm4, false}),
    [](const auto& test) { return test.param.name; });

TEST(ParkedFromAnUnknownProcess, AWindowIsOutOfSightAndComesBack) {
  // The server knows no processes, as of clients on other machines.
  ParkingBed bed({"", DisplayServer::growable, WindowManager::openbox, true},
                 {"-extension", "X-Resource"});
  const std::string display = bed.session().display().name();
  TestWindow window(display, {.area = {300, 250, 400, 300}});
  const TestWindow ofAnother(display, {.area = {100, 100, 200, 150}});
  for (const auto id : {window.id(), ofAnother.id()}) {
    for (const auto* each : {"_NET_WM_PID", "WM_CLASS"}) {
      xcb_delete_property(bed.connection().get(), id, bed.connection().atom(each));
    }
  }
  bed.connection().sync();
  const auto application = bed.session().listed(window.id())->owningApplication;
  EXPECT_EQ(application->applicationName, "Unknown");
  EXPECT_GT(application->processID, 0);
  EXPECT_NE(application->processID,
            bed.session().listed(ofAnother.id())->owningApplication->processID);
  const Rect home = window.area();
  {
    const ParkedWindow parked(bed, window.id());
    EXPECT_TRUE(eventually([&] { return window.area().x >= screenWidth; })) << window.area();
  }
  EXPECT_TRUE(eventually([&] { return window.area() == home; })) << window.area();
  auto& activation = *bed.session().providers().windowActivation;
  EXPECT_TRUE(activation.hasWindows(application->processID));
  EXPECT_TRUE(activation.activateWindows(application->processID));
  EXPECT_TRUE(eventually([&] { return focusedWindow(bed.connection()) == window.id(); }));
  window.destroy();
  EXPECT_TRUE(eventually([&] { return !activation.hasWindows(application->processID); }));
}

/// What the display server and this process hold.
struct Holdings {
  std::string monitors;
  std::size_t topLevelWindows = 0;
  std::size_t descriptors = 0;

  friend bool operator==(const Holdings&, const Holdings&) = default;
  friend std::ostream& operator<<(std::ostream& stream, const Holdings& all) {
    return stream << all.monitors << all.topLevelWindows << " top-level windows, "
                  << all.descriptors << " descriptors";
  }
};

Holdings holdingsOf(ParkingBed& bed) {
  const std::filesystem::directory_iterator descriptors("/proc/self/fd");
  return {monitorReport(bed.session().display()), stackingOrder(bed.connection()).size(),
          static_cast<std::size_t>(std::distance(begin(descriptors), end(descriptors)))};
}

TEST(ParkedTwoHundredTimes, AWindowIsWhereItWasEachTimeAndNothingIsLeftOver) {
  ParkingBed bed({"", DisplayServer::growable, WindowManager::openbox, true});
  const TestWindow window(bed.session().display().name(), {.area = {300, 250, 400, 300}});
  const Rect home = window.area();
  { const ParkedWindow once(bed, window.id()); }
  ASSERT_TRUE(eventually([&] { return window.area() == home; }));
  const Holdings before = holdingsOf(bed);
  for (int i = 0; i < 200; ++i) {
    {
      const ParkedWindow parked(bed, window.id());
      ASSERT_TRUE(parked.isOnHiddenDisplay());
      ASSERT_TRUE(eventually([&] { return window.area().x >= screenWidth; }));
    }
    ASSERT_TRUE(eventually([&] { return window.area() == home; })) << "cycle " << i;
  }
  // A server takes a while to notice that a program has left.
  EXPECT_TRUE(eventually([&] { return holdingsOf(bed) == before; }))
      << holdingsOf(bed) << " instead of " << before;
}

TEST(ParkedUnderAManagerThatHangs, AWindowIsAskedToGoAndNobodyWaitsForEver) {
  ParkingBed bed({"", DisplayServer::fixed, WindowManager::openbox, false});
  const TestWindow window(bed.session().display().name(), {.area = {300, 250, 400, 300}});
  const auto& connection = bed.connection();
  connection.sendToManager(window.id(), "_NET_WM_STATE",
                           {1, connection.atom(fullScreen), 0, byPerson, 0});
  constexpr Rect home{0, 0, screenWidth, screenHeight};
  ASSERT_TRUE(eventually([&] { return window.area() == home; }));
  using platform::linux_desktop::SourceSituation;
  auto& situations = *bed.session().providers().sourceSituations;
  const pid_t manager = bed.session().display().windowManagerPid();
  ::kill(manager, SIGSTOP);
  {
    const ParkedWindow parked(bed, window.id());
    EXPECT_EQ(window.area(), home);
    EXPECT_EQ(situations.of(window.id()), SourceSituation::waitsForManager);
    ::kill(manager, SIGCONT);
    EXPECT_TRUE(eventually([&] { return window.area() != home; }));
    EXPECT_TRUE(
        eventually([&] { return situations.of(window.id()) == SourceSituation::ordinary; }));
    ::kill(manager, SIGSTOP);
  }
  EXPECT_EQ(situations.of(window.id()), SourceSituation::waitsForManager) << "on its way home";
  ::kill(manager, SIGCONT);
  EXPECT_TRUE(eventually([&] { return window.area() == home; }));
}

TEST(ParkedUnderAManagerThatGoes, AWindowIsInSightAgainUnderTheNextOne) {
  ParkingBed bed({"", DisplayServer::growable, WindowManager::openbox, true});
  const TestWindow window(bed.session().display().name(),
                          {.area = {300, 250, 400, 300}, .decorated = false});
  {
    const ParkedWindow parked(bed, window.id());
    ASSERT_TRUE(eventually([&] { return window.area().x >= screenWidth; }));
    ::kill(bed.session().display().windowManagerPid(), SIGKILL);
    bed.session().display().replaceWindowManager(WindowManager::none);
  }
  EXPECT_TRUE(eventually([&] {
    return window.area() == Rect{300, 250, 400, 300};
  })) << window.area();
  bed.session().display().replaceWindowManager(WindowManager::openbox);
  EXPECT_EQ(window.area(), (Rect{300, 250, 400, 300}));
  EXPECT_TRUE(isViewable(bed.connection(), window.id()));
  EXPECT_EQ(bed.connection().numbers(window.id(), "_NET_WM_DESKTOP"), std::vector{0U});
}

/// A parked window that has gone, and another program's that has been given its number.
class ParkedUntilItGoes : public ::testing::Test {
 protected:
  static constexpr Rect area{40, 500, 300, 200};

  void SetUp() override {
    const auto& display = bed_.session().display().name();
    window_.emplace(display, TestWindow::Options{});
    const auto number = window_->id();
    parked_.emplace(bed_, number);
    ASSERT_TRUE(eventually([&] { return window_->area().x >= screenWidth; }));
    window_.reset();
    ASSERT_TRUE(eventually([&] { return !areaOf(bed_.connection(), number); }));
    awaitManager(bed_.connection());  // or it would take the next one for this one
    window_.emplace(display, TestWindow::Options{.area = area, .decorated = false});
    ASSERT_EQ(window_->id(), number) << "servers give the lowest number that is free";
  }
  Rect areaOfTheOther() {
    awaitManager(bed_.connection());
    return window_->area();
  }

  ParkingBed bed_{{"", DisplayServer::growable, WindowManager::openbox, true}};
  std::optional<TestWindow> window_;
  std::optional<ParkedWindow> parked_;
};

TEST_F(ParkedUntilItGoes, AnotherWindowThatGetsItsNumberStaysWhereItIs) {
  parked_.reset();
  EXPECT_EQ(areaOfTheOther(), area);
}

TEST_F(ParkedUntilItGoes, AnotherWindowThatGetsItsNumberStaysWhereItIsWhenAllGoHome) {
  auto& sources = *bed_.session().providers().parkedSources;
  sources.sendAllHome();
  EXPECT_EQ(areaOfTheOther(), area);
  sources.parkAgain();
  EXPECT_EQ(areaOfTheOther(), area);
}

TEST_F(ParkedUntilItGoes, AnotherWindowThatGetsItsNumberStaysWhereItIsWhenTheHiddenMonitorMoves) {
  auto& session = bed_.session().providers();
  Monitors(bed_.connection()).set("in its way", {screenWidth, 0, 100, screenHeight});
  session.clearMonitors();
  session.parkedSources->parkAgain();  // after what goes on beside the main thread
  EXPECT_EQ(areaOfTheOther(), area);
}

TEST(ParkedUnderAManagerThatIsLate, AWindowIsNotSoughtWhereItIsAboutToLeave) {
  ParkingBed bed({"", DisplayServer::growable, WindowManager::none, true});
  const TestWindow window(bed.session().display().name(), {.area = {300, 250, 400, 300}});
  const LazyManager manager(bed.session().display().name());
  {
    const ParkedWindow parked(bed, window.id());
    awaitManager(bed.connection());
    ASSERT_GE(window.area().x, screenWidth);
  }
  EXPECT_EQ(ParkingBed::positionOf(*bed.elementOf(window.id())), (platform::Point{300, 250}));
}

TEST(OtherProgramsWindows, CannotBeReachedWithoutAManager) {
  ParkingBed bed({"", DisplayServer::fixed, WindowManager::none, false});
  const TestWindow window(bed.session().display().name(), {.area = {300, 250, 400, 300}});
  auto& accessibility = *bed.session().providers().otherWindows;
  EXPECT_FALSE(accessibility.isProcessTrusted());
  EXPECT_FALSE(accessibility.isProcessTrustedWithOptions(true));
  EXPECT_THROW(bed.elementOf(window.id()), std::runtime_error);
  bed.session().display().replaceWindowManager(WindowManager::openbox);
  EXPECT_TRUE(accessibility.isProcessTrusted());
  EXPECT_NE(bed.elementOf(window.id()), nullptr);
  bed.session().display().replaceWindowManager(WindowManager::none);
  EXPECT_TRUE(eventually([&] { return !accessibility.isProcessTrusted(); }));
}

}  // namespace
}  // namespace vistrel::testbed
