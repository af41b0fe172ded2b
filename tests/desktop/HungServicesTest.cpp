#include <algorithm>
#include <csignal>

#include "tests/desktop/DesktopTest.h"
#include "tests/support/DeafServices.h"
#include "tests/support/GlobalMenu.h"

namespace vistrel::testbed {
namespace {

/// Toolkits give up after 25 s at the earliest.
constexpr std::chrono::seconds soonerThanToolkits{15};

class HungServices : public DesktopTest {
 protected:
  void startIn(std::vector<std::string> environment) {
    vistrel_ = std::make_unique<RunningVistrel>(
        connection_, RunningVistrel::command({}, std::move(environment)), scale_);
  }
  void startOnBus(const std::string& address) { startIn(display_.environmentOnBus(address)); }
  ::testing::AssertionResult pickerComes() {
    const auto isOnScreen = [&] {
      const auto windows = windowsOfProcess(connection_, vistrel_->process().pid());
      return std::ranges::any_of(
          windows, [&](xcb_window_t window) { return isViewable(connection_, window); });
    };
    return eventually(isOnScreen, soonerThanToolkits)
               ? ::testing::AssertionSuccess()
               : ::testing::AssertionFailure() << "no window is on screen";
  }
  ::testing::AssertionResult endsWhenAsked() {
    vistrel_->process().sendSignal(SIGTERM);
    return ends();
  }
  ::testing::AssertionResult ends() {
    const auto ending = vistrel_->process().waitForEnd(soonerThanToolkits);
    vistrel_.reset();
    if (!ending) return ::testing::AssertionFailure() << "it goes on";
    return ending->exitStatus == 0 ? ::testing::AssertionSuccess()
                                   : ::testing::AssertionFailure() << "it ends in another way";
  }
};

TEST_F(HungServices, ThePickerComesWhereTheSessionBusAnswersNobody) {
  const DeafListener bus(DeafListener::Connecting::succeeds);
  startOnBus(bus.address());
  EXPECT_TRUE(pickerComes());
  EXPECT_TRUE(endsWhenAsked());
}

TEST_F(HungServices, ThePickerComesWhereTheSessionBusAcceptsNobody) {
  const DeafListener bus(DeafListener::Connecting::waitsForEver);
  startOnBus(bus.address());
  EXPECT_TRUE(pickerComes());
  EXPECT_TRUE(endsWhenAsked());
}

TEST_F(HungServices, ThePickerComesWhereTheAccessibilityServiceAnswersNobody) {
  const DeafService service(display_, "org.a11y.Bus");
  startVistrel();
  EXPECT_TRUE(pickerComes());
  EXPECT_TRUE(endsWhenAsked());
}

TEST_F(HungServices, ThePickerComesWhereTheGlobalMenuAnswersNobody) {
  const DeafService service(display_, "com.canonical.AppMenu.Registrar");
  startVistrel();
  EXPECT_TRUE(pickerComes());
  EXPECT_TRUE(endsWhenAsked());
}

TEST_F(HungServices, ThePickerComesWhereTheSessionManagerAnswersNobody) {
  const DeafListener manager(DeafListener::Connecting::succeeds);
  auto environment = display_.environment();
  environment.push_back("SESSION_MANAGER=local/:" + manager.path());
  startIn(std::move(environment));
  EXPECT_TRUE(pickerComes());
  EXPECT_TRUE(endsWhenAsked());
}

TEST_F(HungServices, TheProgramQuitsThoughTheSessionBusHasStoppedAnswering) {
  const GlobalMenu menu(display_);
  startVistrel();
  const xcb_window_t picker = vistrel_->picker().id();
  ASSERT_TRUE(eventually([&] { return menu.hasMenuOf(picker); }));
  activate(picker);
  kill(display_.busPid(), SIGSTOP);
  input_.typeHolding(keyControl, 'q');
  EXPECT_TRUE(ends());
  kill(display_.busPid(), SIGCONT);
}

TEST_F(HungServices, TheProgramEndsWhenAskedWhileItsMainThreadWaitsForTheDisplay) {
  startVistrel();
  ASSERT_TRUE(pickerComes());
  kill(display_.serverPid(), SIGSTOP);
  EXPECT_TRUE(endsWhenAsked());
  kill(display_.serverPid(), SIGCONT);
}

}  // namespace
}  // namespace vistrel::testbed
