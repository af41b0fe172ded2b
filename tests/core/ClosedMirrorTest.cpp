#include <gtest/gtest.h>

#include "catalogue/WindowMirrorManager.h"
#include "mirror/LiveDotColors.h"
#include "tests/core/CoreTest.h"

namespace vistrel {
namespace {

using platform::Menu;
using enum PeerCall::Kind;

/// Every road by which something can reach a mirror that has been closed and that something still
/// holds, here the test.
class ClosedMirrorTest : public MirrorTest {
 protected:
  static void chooseEverythingIn(const Menu& menu) {
    for (const auto& item : menu.items()) {
      platform::performAction(item);
      if (item->submenu()) chooseEverythingIn(*item->submenu());
    }
  }
};

TEST_F(ClosedMirrorTest, ContentThatArrivesLaterStartsNothing) {
  capture().answers().hold(Request::content);
  makeMirror(openSource());
  mirror_->show();
  mirror_->close();
  capture().answers().release(Request::content);
  desktop_.turnMainQueue();
  EXPECT_THAT(capture().streams(), IsEmpty());
}

TEST_F(ClosedMirrorTest, ContentOfARecaptureStartsNothing) {
  showMirror();
  capture().answers().hold(Request::content);
  mirror_->recaptureMenu();
  mirror_->close();
  capture().answers().release(Request::content);
  desktop_.turnMainQueue();
  ASSERT_EQ(capture().streams().size(), 1U);
  EXPECT_FALSE(stream()->isRunning());
}

TEST_F(ClosedMirrorTest, FailedContentShowsNothing) {
  capture().failContent(Error{"whatever"});
  makeMirror(openSource());
  mirror_->show();
  desktop_.virtualTime().turnOtherQueues();  // the status is on its way to main
  mirror_->close();
  desktop_.turnMainQueue();
  EXPECT_EQ(status(), "");
}

TEST_F(ClosedMirrorTest, StartThatFailsLaterShowsNothing) {
  capture().answers().hold(Request::start);
  capture().scriptStreams({.startFails = Error{"no"}});
  showMirror();
  mirror_->close();
  capture().answers().release(Request::start);
  desktop_.turnMainQueue();
  EXPECT_EQ(status(), "");
}

TEST_F(ClosedMirrorTest, StartThatCompletesLaterLeavesTheStatusAsItIs) {
  capture().answers().hold(Request::start);
  showMirror();
  mirror_->showStatus("text");
  mirror_->close();
  capture().answers().release(Request::start);
  desktop_.turnMainQueue();
  EXPECT_EQ(status(), "text");
}

TEST_F(ClosedMirrorTest, FrameOnItsWayToMainIsDropped) {
  showMirror();
  stream()->deliver({.image = brightPixels()});
  desktop_.virtualTime().turnOtherQueues();
  mirror_->close();
  desktop_.turnMainQueue();
  EXPECT_EQ(shownImage(), nullptr);
}

TEST_F(ClosedMirrorTest, TickOfATimerThatStillRunsIsIgnored) {
  showMirror();
  deliverPicture();
  mirror_->show();  // starts another timer beside the first
  mirror_->close();
  desktop_.advance(10);
  EXPECT_EQ(dot(), liveColor);
}

TEST_F(ClosedMirrorTest, CommandsOfItsMenuDoNothing) {
  showMirror();
  desktop_.workspace().startApplication(99);
  host_->count = 2;
  const auto menu = mirror_->makeContextMenu();
  mirror_->close();
  desktop_.journal().clear();
  const auto history = windows().historyOf(*mirror_->panel());
  history->calls.clear();
  chooseEverythingIn(*menu);
  desktop_.turnMainQueue();
  EXPECT_THAT(history->steps(), IsEmpty());
  EXPECT_EQ(capture().contentRequests().size(), 1U);
  EXPECT_THAT(desktop_.journal().calls(), IsEmpty());
  EXPECT_THAT(desktop_.workspace().activatedApplications(), IsEmpty());
  EXPECT_EQ(host_->closeAllCount, 0);
  EXPECT_THAT(closed_, IsEmpty());
}

TEST_F(ClosedMirrorTest, ItsViewsDoNothing) {
  showMirror();
  host_->snapOffset = {3, -4};
  mirror_->close();
  const auto history = windows().historyOf(*mirror_->panel());
  history->calls.clear();
  partsOf(*mirror_).closeButton->performClick();
  partsOf(*mirror_).card->onDoubleClick();
  EXPECT_EQ(partsOf(*mirror_).card->menuProvider(), nullptr);
  EXPECT_EQ(partsOf(*mirror_).card->snap(rect(1, 2, 3, 4)), rect(1, 2, 3, 4));
  EXPECT_THAT(history->steps(), IsEmpty());
  EXPECT_THAT(closed_, IsEmpty());
}

TEST_F(ClosedMirrorTest, ClosingAgainDoesNothing) {
  showMirror();
  mirror_->close();
  const auto history = windows().historyOf(*mirror_->panel());
  mirror_->close();
  EXPECT_EQ(history->count(orderOut), 1);
  EXPECT_EQ(history->count(close), 1);
}

class ClosedMirrorInRegistryTest : public CoreTest {
 protected:
  std::shared_ptr<WindowMirrorManager> manager_ = WindowMirrorManager::make();
};

TEST_F(ClosedMirrorInRegistryTest, IsNotTakenForTheNextMirrorOfItsWindow) {
  const auto source = openSource();
  manager_->mirror(source);
  const auto former = manager_->mirrors().begin()->second;
  manager_->closeAll();
  manager_->mirror(source);
  former->closeClicked();
  ASSERT_EQ(manager_->mirrors().size(), 1U);
  EXPECT_NE(manager_->mirrors().begin()->second, former);
  EXPECT_TRUE(manager_->mirrors().begin()->second->panel()->isVisible());
}

TEST_F(ClosedMirrorInRegistryTest, IsNotShownAgainFromAMenuThatListsIt) {
  manager_->mirror(openSource());
  const auto mirror = manager_->mirrors().begin()->second;
  mirror->toggleRollUp();
  const auto menu = std::make_shared<Menu>("Focus Window Mirror");
  manager_->menuNeedsUpdate(*menu);
  manager_->closeAll();
  const Rect frame = mirror->panel()->frame();
  platform::performAction(menu->items().front());
  EXPECT_FALSE(mirror->panel()->isVisible());
  EXPECT_EQ(mirror->panel()->frame(), frame);
}

}  // namespace
}  // namespace vistrel
