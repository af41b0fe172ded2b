#include <array>
#include <xcb/randr.h>
#include <xcb/xtest.h>

#include "platform/linux/x11/monitors/HiddenMonitor.h"
#include "platform/linux/x11/server/ProcessToken.h"
#include "tests/managed/LazyManager.h"
#include "tests/managed/ParkingBed.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/MonitorReport.h"
#include "tests/support/Monitors.h"
#include "tests/support/Poll.h"
#include "tests/support/XWindows.h"

namespace vistrel::testbed {
namespace {

constexpr Rect mainArea{0, 0, 1280, 1024};

xcb_randr_output_t primaryOutput(const XConnection& connection) {
  const XReply<xcb_randr_get_output_primary_reply_t> reply(xcb_randr_get_output_primary_reply(
      connection.get(), xcb_randr_get_output_primary(connection.get(), connection.root()),
      nullptr));
  return reply->output;
}

void setPrimaryOutput(const XConnection& connection, xcb_randr_output_t output) {
  xcb_randr_set_output_primary(connection.get(), connection.root(), output);
  connection.sync();
}

/// The pointer as a mouse moves it, by so much.
Point pushPointer(const XConnection& connection, std::int16_t x, std::int16_t y) {
  constexpr std::uint8_t relative = 1;
  xcb_test_fake_input(connection.get(), XCB_MOTION_NOTIFY, relative, XCB_CURRENT_TIME,
                      XCB_WINDOW_NONE, x, y, 0);
  return pointerOn(connection).place;
}

/// A window that leaves it to the manager where it goes.
class UnplacedWindow {
 public:
  explicit UnplacedWindow(const std::string& display)
      : connection_(display), window_(xcb_generate_id(connection_.get())) {
    xcb_create_window(connection_.get(), XCB_COPY_FROM_PARENT, window_, connection_.root(), 0, 0,
                      300, 200, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_map_window(connection_.get(), window_);
    EXPECT_TRUE(eventually(
        [&] { return isViewable(connection_, window_) && frameExtentsOf(connection_, window_); }));
  }

  Rect area() const { return areaOf(connection_, window_).value_or(Rect{}); }

 private:
  XConnection connection_;
  xcb_window_t window_;
};

class HiddenDisplay : public ::testing::TestWithParam<ParkingPlace> {
 protected:
  std::string report() { return monitorReport(bed_.session().display()); }

  ParkingBed bed_{GetParam()};
};

TEST_P(HiddenDisplay, StandsToTheRightUntilItIsRemovedWithoutATrace) {
  const std::string before = report();
  EXPECT_EQ(bed_.displayCount(), 1u);
  const auto display = bed_.makeDisplay(1500, 1200);
  ASSERT_TRUE(display.has_value());
  EXPECT_NE(*display, 0u);
  EXPECT_EQ(bed_.boundsOf(*display), (Rect{1280, 0, 1500, 1200}));
  EXPECT_EQ(bed_.displayCount(), 2u);
  EXPECT_NE(report().find("current 2780 x 1024"), std::string::npos) << report();
  bed_.removeDisplay(*display);
  EXPECT_EQ(bed_.boundsOf(*display), Rect{});
  EXPECT_EQ(report(), before);
}

TEST_P(HiddenDisplay, IsRemovedThoughTheServerHasThrownItsConnectionOut) {
  namespace x11 = platform::linux_desktop;
  const std::string before = report();
  const auto display = bed_.makeDisplay(1000, 800);
  ASSERT_TRUE(display.has_value());
  const auto connection = x11::Connection::open();
  const auto owners = x11::monitorOwnersOf(*connection, x11::processToken());
  ASSERT_EQ(owners.size(), 1u);
  xcb_kill_client(connection->xcb(), owners.front());
  connection->sync();
  bed_.removeDisplay(*display);
  EXPECT_EQ(report(), before);
}

TEST_P(HiddenDisplay, LeavesRoomForAnother) {
  const std::string before = report();
  const auto first = bed_.makeDisplay(1000, 800);
  const auto second = bed_.makeDisplay(1100, 900);
  ASSERT_TRUE(first && second);
  EXPECT_NE(*first, *second);
  EXPECT_EQ(bed_.boundsOf(*first), (Rect{1280, 0, 1000, 800}));
  EXPECT_EQ(bed_.boundsOf(*second), (Rect{2280, 0, 1100, 900}));
  bed_.removeDisplay(*first);
  EXPECT_EQ(bed_.boundsOf(*second), (Rect{2280, 0, 1100, 900}));
  const auto third = bed_.makeDisplay(900, 700);
  ASSERT_TRUE(third.has_value());
  EXPECT_EQ(bed_.boundsOf(*third), (Rect{1280, 0, 900, 700}));
  bed_.removeDisplay(*second);
  bed_.removeDisplay(*third);
  EXPECT_EQ(report(), before);
}

TEST_P(HiddenDisplay, IsNoPlaceForNewWindowsNorForThePointer) {
  const auto output = primaryOutput(bed_.connection());
  setPrimaryOutput(bed_.connection(), XCB_NONE);
  const std::string before = report();
  const auto display = bed_.makeDisplay(1280, 1024);
  ASSERT_TRUE(display.has_value());
  EXPECT_EQ(primaryOutput(bed_.connection()), output);
  const UnplacedWindow window(bed_.session().display().name());
  EXPECT_LE(window.area().x + window.area().width, mainArea.width);
  EXPECT_LT(pushPointer(bed_.connection(), 5000, 0).x, mainArea.width);
  EXPECT_LT(pushPointer(bed_.connection(), 1, 1).x, mainArea.width);
  bed_.removeDisplay(*display);
  EXPECT_EQ(report(), before) << "no output was primary, and none is to be";
}

TEST_P(HiddenDisplay, LeavesAloneWhatAPersonHasChangedMeanwhile) {
  setPrimaryOutput(bed_.connection(), XCB_NONE);
  const auto display = bed_.makeDisplay(1280, 1024);
  ASSERT_TRUE(display.has_value());
  xcb_randr_set_screen_size(bed_.connection().get(), bed_.connection().root(), 3000, 1100, 700,
                            300);
  setPrimaryOutput(bed_.connection(), XCB_NONE);
  const auto another = bed_.makeDisplay(1280, 1024);
  ASSERT_TRUE(another.has_value());
  bed_.removeDisplay(*display);
  bed_.removeDisplay(*another);
  EXPECT_EQ(areaOf(bed_.connection(), bed_.connection().root()), (Rect{0, 0, 3000, 1100}));
}

TEST_P(HiddenDisplay, IsRefusedWhereTheScreenCannotGrowThatFar) {
  const std::string before = report();
  EXPECT_FALSE(bed_.makeDisplay(32000, 1024).has_value());
  EXPECT_FALSE(bed_.makeDisplay(100000, 1024).has_value());
  EXPECT_EQ(report(), before);
}

INSTANTIATE_TEST_SUITE_P(Places, HiddenDisplay,
                         ::testing::Values(ParkingPlace{"GrowableWithOpenbox",
                                                        DisplayServer::growable,
                                                        WindowManager::openbox, true},
                                           ParkingPlace{"XorgWithMutter", DisplayServer::xorg,
                                                        WindowManager::mutter, true}),
                         [](const auto& test) { return test.param.name; });

TEST(HiddenDisplayAmongMonitors, StandsToTheRightOfAllThatAreInItsWay) {
  ParkingBed bed({"", DisplayServer::growable, WindowManager::none, true});
  const Monitors monitors(bed.connection());
  monitors.setPrimary("first", {0, 0, 700, 1024});
  monitors.set("second", {700, 0, 580, 500});
  monitors.set("third", {1280, 400, 300, 600});
  const std::string before = monitorReport(bed.session().display());
  const auto display = bed.makeDisplay(1000, 800);
  ASSERT_TRUE(display.has_value());
  EXPECT_EQ(bed.boundsOf(*display), (Rect{1580, 0, 1000, 800}));
  monitors.remove("third");
  bed.removeDisplay(*display);
  const auto next = bed.makeDisplay(1000, 800);
  ASSERT_TRUE(next.has_value());
  EXPECT_EQ(bed.boundsOf(*next), (Rect{1280, 0, 1000, 800}));
  bed.removeDisplay(*next);
  monitors.set("third", {1280, 400, 300, 600});
  EXPECT_EQ(monitorReport(bed.session().display()), before);
}

class HiddenDisplayWithAWindow : public ::testing::Test {
 protected:
  /// As a person has it by `xrandr --output … --mode …`, without regard to what nothing is
  /// connected to.
  void setMainMonitor(int width, int height) {
    const auto timing = [](int active) {
      return std::array{std::to_string(active), std::to_string(active + 8),
                        std::to_string(active + 16), std::to_string(active + 32)};
    };
    const std::string mode = "test-" + std::to_string(width);
    std::vector<std::string> newMode{"--newmode", mode, "100"};
    for (const auto& each : {timing(width), timing(height)}) {
      newMode.insert(newMode.end(), each.begin(), each.end());
    }
    xrandr(newMode);
    xrandr({"--addmode", "screen", mode});
    xrandr({"--output", "screen", "--mode", mode});
    using platform::linux_desktop::ScreenLayout;
    bed_.session().providers().layout->set(ScreenLayout({{{0, 0, width, height}, 1}}));
    bed_.session().providers().clearMonitors();
  }
  void xrandr(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "xrandr");
    ChildProcess process(
        {.arguments = arguments, .environment = bed_.session().display().environment()});
    const auto ending = process.waitForEnd();
    EXPECT_TRUE(ending && ending->exitStatus == 0) << process.standardError();
  }

  ParkingBed bed_{{"", DisplayServer::growable, WindowManager::openbox, true}};
};

TEST_F(HiddenDisplayWithAWindow, GetsOutOfTheWayOfAMonitorThatHasBecomeLarger) {
  const TestWindow window(bed_.session().display().name(), {.area = {300, 250, 400, 300}});
  const Rect home = window.area();
  {
    const ParkedWindow parked(bed_, window.id());
    ASSERT_TRUE(eventually([&] { return window.area().x >= mainArea.width; }));
    for (const int width : {1920, 1280, 2560}) {
      setMainMonitor(width, 1200);
      EXPECT_TRUE(eventually([&] { return window.area().x >= width; })) << window.area();
      EXPECT_EQ(bed_.displayCount(), 2u);
    }
  }
  EXPECT_TRUE(eventually([&] { return window.area() == home; })) << window.area();
  EXPECT_EQ(areaOf(bed_.connection(), bed_.connection().root()), (Rect{0, 0, 2560, 1200}));
}

TEST_F(HiddenDisplayWithAWindow, GoesWhereThereIsNoRoomForItAnyMore) {
  const TestWindow window(bed_.session().display().name(), {.area = {300, 250, 400, 300}});
  const Rect home = window.area();
  {
    const ParkedWindow parked(bed_, window.id());
    ASSERT_TRUE(eventually([&] { return window.area().x >= mainArea.width; }));
    setMainMonitor(6000, 1200);
    EXPECT_EQ(bed_.displayCount(), 1u);
    EXPECT_TRUE(eventually([&] { return window.area().x >= 6000 - 64; })) << window.area();
  }
  EXPECT_TRUE(eventually([&] { return window.area() == home; })) << window.area();
}

TEST(HiddenDisplayClasses, AreMissingWhereTheScreenCannotGrow) {
  ParkingBed bed({"", DisplayServer::fixed, WindowManager::none, false});
  EXPECT_FALSE(bed.session().providers().hiddenDisplays->hostsVirtualDisplays());
  EXPECT_FALSE(bed.makeDisplay(100, 100).has_value());
  EXPECT_EQ(bed.displayCount(), 1u);
}

TEST(HiddenDisplayUnderAManagerThatIgnoresIt, IsRefusedAndLeavesNoTrace) {
  ParkingBed bed({"", DisplayServer::growable, WindowManager::xfwm4, false});
  const std::string before = monitorReport(bed.session().display());
  EXPECT_TRUE(bed.session().providers().hiddenDisplays->hostsVirtualDisplays());
  EXPECT_FALSE(bed.makeDisplay(1000, 800).has_value());
  EXPECT_EQ(monitorReport(bed.session().display()), before);
}

TEST(HiddenDisplayUnderAManagerThatIsLate, IsMadeAllTheSame) {
  ParkingBed bed({"", DisplayServer::growable, WindowManager::none, true});
  const LazyManager manager(bed.session().display().name());
  const auto display = bed.makeDisplay(1000, 800);
  ASSERT_TRUE(display.has_value());
  EXPECT_EQ(bed.boundsOf(*display), (Rect{1280, 0, 1000, 800}));
}

}  // namespace
}  // namespace vistrel::testbed
