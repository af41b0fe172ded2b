#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <gmock/gmock.h>
#include <memory>
#include <sys/wait.h>

#include "tests/support/AccessibilityBus.h"
#include "tests/support/DBus.h"
#include "tests/support/EachWindowManager.h"
#include "tests/support/InputDriver.h"
#include "tests/support/ManagerProbe.h"
#include "tests/support/Poll.h"
#include "tests/support/PrivateDisplay.h"
#include "tests/support/ScreenReader.h"
#include "tests/support/TestWindow.h"
#include "tests/support/XWindows.h"

namespace vistrel::testbed {
namespace {

// A process that has ended and that nobody has waited for has no command line.
bool isRunning(pid_t pid) {
  std::ifstream commandLine("/proc/" + std::to_string(pid) + "/cmdline");
  return commandLine.get() != std::ifstream::traits_type::eof();
}

TEST(ChildProcess, TellsHowItEndedAndWhatItWrote) {
  ChildProcess child({.arguments = {"sh", "-c", "echo out; echo err >&2; exit 3"},
                      .environment = {"PATH=/usr/bin:/bin"}});
  const auto ending = child.waitForEnd();
  ASSERT_TRUE(ending.has_value());
  EXPECT_EQ(ending->exitStatus, 3);
  EXPECT_EQ(child.standardOutput(), "out\n");
  EXPECT_EQ(child.standardError(), "err\n");
}

TEST(PrivateDisplay, LeavesNothingRunning) {
  std::filesystem::path home;
  {
    const PrivateDisplay display;
    home = display.home();
    EXPECT_NO_THROW(XConnection{display.name()});
  }
  EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD) << "a child process is left";
  EXPECT_FALSE(std::filesystem::exists(home));
}

TEST(PrivateDisplay, TakesNothingOverFromTheMachinesDesktop) {
  const auto mentionsDesktop = [](const std::string& variable) {
    return variable.ends_with("=machine's");
  };
  for (const char* name : {"GTK_MODULES", "QT_STYLE_OVERRIDE", "XDG_CURRENT_DESKTOP", "LANGUAGE"}) {
    ::setenv(name, "machine's", 1);
  }
  const PrivateDisplay display;
  const auto environment = display.environment();
  EXPECT_TRUE(std::ranges::none_of(environment, mentionsDesktop));
  display.adoptEnvironment();
  EXPECT_EQ(std::getenv("GTK_MODULES"), nullptr);
  EXPECT_EQ(std::getenv("DISPLAY"), display.name());
}

TEST(PrivateDisplay, OffersOnlyTheServicesThatASessionConsistsOf) {
  const PrivateDisplay display;
  constexpr const char* bus = "org.freedesktop.DBus";
  BusMessage answer = BusObject(connectToBus(display.busAddress()), bus, "/org/freedesktop/DBus")
                          .call(bus, "ListActivatableNames");
  std::vector<std::string> services;
  answer.array("s", [&] { services.push_back(answer.text()); });
  EXPECT_THAT(services, ::testing::UnorderedElementsAre(bus, "org.a11y.Bus", "org.xfce.Xfconf",
                                                        "org.kde.kglobalaccel"));
}

TEST(AccessibilityBus, EndsWithItsSession) {
  pid_t launcher = 0;
  {
    const PrivateDisplay display;
    const AccessibilityBus screenReader(display);
    launcher = screenReader.launcherPid();
    EXPECT_TRUE(isRunning(launcher));
  }
  EXPECT_TRUE(eventually([&] { return !isRunning(launcher); }));
}

TEST(PrivateDisplay, SaysWhyAServerDidNotStart) {
  EXPECT_THROW(PrivateDisplay({.serverArguments = {"-no-such-option"}}), std::runtime_error);
}

class PrivateDisplayWith : public ::testing::TestWithParam<WindowManager> {};

TEST_P(PrivateDisplayWith, HasItsManagerFrameAWindow) {
  const PrivateDisplay display({.windowManager = GetParam()});
  const XConnection connection(display.name());
  const TestWindow window(display.name(), {.area = {200, 150, 300, 200}});
  EXPECT_TRUE(eventually([&] {
    const auto extents = frameExtentsOf(connection, window.id());
    return extents && extents->top > 0;
  }));
}

VISTREL_WITH_EACH_MANAGER(PrivateDisplayWith);
VISTREL_WITH_FURTHER_MANAGERS(PrivateDisplayWith);

class TestBed : public ::testing::Test {
 protected:
  const PrivateDisplay display_;
  const XConnection connection_{display_.name()};
  const ScreenReader screen_{connection_};
};

TEST_F(TestBed, AWindowShowsItsQuadrantsWhereItWasAskedToBe) {
  const TestWindow window(display_.name(), {.area = {200, 150, 300, 200}});
  EXPECT_EQ(window.area(), (Rect{200, 150, 300, 200}));
  const Picture picture = screen_.read(window.area());
  EXPECT_EQ(picture.at(75, 50), red);
  EXPECT_EQ(picture.at(225, 50), green);
  EXPECT_EQ(picture.at(75, 150), blue);
  EXPECT_EQ(picture.at(225, 150), yellow);
}

TEST_F(TestBed, AWindowMovesResizesHidesAndComesBack) {
  TestWindow window(display_.name(), {.area = {200, 150, 300, 200}});
  window.moveTo({400, 300});
  window.resize(100, 80);
  EXPECT_EQ(window.area(), (Rect{400, 300, 100, 80}));
  EXPECT_EQ(screen_.pixel({490, 370}), yellow);
  window.minimise();
  window.map();
  window.unmap();
  window.map();
  window.destroy();
  EXPECT_FALSE(areaOf(connection_, window.id()).has_value());
}

TEST_F(TestBed, ThePointerRaisesAWindowByClickingIt) {
  const TestWindow below(display_.name(), {.area = {100, 100, 300, 200}});
  TestWindow above(display_.name(), {.area = {150, 150, 300, 200}});
  above.raiseAbove(below);
  InputDriver(connection_).clickAt({110, 110});
  EXPECT_TRUE(eventually([&] { return isAbove(connection_, below.id(), above.id()); }));
}

TEST_F(TestBed, NothingThatAManagerWasAskedIsDoneToALaterWindow) {
  ::kill(display_.windowManagerPid(), SIGSTOP);
  xcb_window_t first = XCB_WINDOW_NONE;
  {
    const XConnection brief(display_.name());
    first = xcb_get_setup(brief.get())->resource_id_base;
    EXPECT_FALSE(ManagerProbe(brief).isAnswered());
  }
  // A server gives the numbers out again once it has noticed.
  std::unique_ptr<TestWindow> window;
  ASSERT_TRUE(eventually([&] {
    window = std::make_unique<TestWindow>(
        display_.name(), TestWindow::Options{.area = {200, 150, 300, 200}, .managed = false});
    return window->id() == first;
  }));
  ::kill(display_.windowManagerPid(), SIGCONT);
  // Twice, since openbox 3.6.1 that has been held up may answer before it has done all.
  awaitManager(connection_);
  awaitManager(connection_);
  EXPECT_EQ(window->area(), (Rect{200, 150, 300, 200}));
}

TEST_F(TestBed, WindowsAreFoundByTheirProcess) {
  const TestWindow window(display_.name(), {.title = "Mine", .pid = 4242});
  const auto found = windowsOfProcess(connection_, 4242);
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(titleOf(connection_, found.front()), "Mine");
}

}  // namespace
}  // namespace vistrel::testbed
