#include <gtest/gtest.h>

#include "app/AppDelegate.h"
#include "picker/PickerWindowController.h"
#include "tests/core/CoreTest.h"

namespace vistrel {
namespace {

/// The program's one manager and picker last as long as the process, and so does their desktop.
class ApplicationTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { desktop = new SimulatedBackend(); }

  platform::Window& pickerWindow() { return *PickerWindowController::shared()->window(); }
  int timesBroughtForward() {
    return desktop->windows()
        .historyOf(pickerWindow())
        ->count(PeerCall::Kind::makeKeyAndOrderFront);
  }

  static SimulatedBackend* desktop;
  std::shared_ptr<AppDelegate> delegate_ = std::make_shared<AppDelegate>();
};

SimulatedBackend* ApplicationTest::desktop = nullptr;

TEST_F(ApplicationTest, ShowsThePickerAtLaunchAndOnEachClickOnItsIcon) {
  desktop->application().setDelegate(delegate_);
  desktop->screenCapture().openWindow(
      {.title = "Title", .frame = rect(0, 0, 400, 300), .isOnScreen = true});
  desktop->application().run();
  EXPECT_TRUE(pickerWindow().isVisible());
  EXPECT_EQ(timesBroughtForward(), 1);
  EXPECT_THAT(desktop->application().activations(), ElementsAre(true));
  EXPECT_EQ(PickerWindowController::shared()->windows().size(), 1U);

  pickerWindow().close();
  for (const bool hasVisibleWindows : {false, true}) {
    EXPECT_TRUE(desktop->application().clickIcon(hasVisibleWindows));
    EXPECT_TRUE(pickerWindow().isVisible());
  }
  EXPECT_EQ(timesBroughtForward(), 3);
  EXPECT_EQ(desktop->screenCapture().contentRequests().size(), 3U);
  EXPECT_EQ(desktop->windows().windowsFrontToBack().size(), 1U);
  desktop->turnMainQueue();
}

TEST_F(ApplicationTest, HasOneManagerWhichItsPickerUses) {
  EXPECT_EQ(WindowMirrorManager::shared(), WindowMirrorManager::shared());
  const auto& picker = PickerWindowController::shared();
  EXPECT_EQ(picker, PickerWindowController::shared());
  desktop->screenCapture().openWindow(
      {.title = "Title", .frame = rect(0, 0, 400, 300), .isOnScreen = true});
  picker->reload();
  desktop->turnMainQueue();
  picker->tableView()->personDidSelectRow(0);
  picker->mirrorSelected();
  EXPECT_EQ(WindowMirrorManager::shared()->mirrors().size(), 1U);
  WindowMirrorManager::shared()->closeAll();
  desktop->turnMainQueue();
}

}  // namespace
}  // namespace vistrel
