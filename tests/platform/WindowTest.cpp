#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/Window.h"
#include "platform/simulated/SimulatedBackend.h"

namespace vistrel::platform {
namespace {

using simulated::PeerCall;
using simulated::SimulatedWindowPeer;
using testing::ElementsAre;
using enum PeerCall::Kind;

class WindowTest : public testing::Test {
 protected:
  std::shared_ptr<Window> makeWindow(std::uint64_t styleMask, const Rect& contentRect) {
    return makeOwnedByMain<Window>(contentRect, styleMask, BackingStore::buffered, false);
  }

  simulated::SimulatedBackend desktop_;
  std::shared_ptr<Window> window_ = makeWindow(styleBorderless, rect(10, 20, 300, 200));
};

TEST_F(WindowTest, IsMadeHiddenWithAContentViewOfItsSize) {
  EXPECT_FALSE(window_->isVisible());
  EXPECT_FALSE(window_->isPanel());
  EXPECT_EQ(window_->frame(), rect(10, 20, 300, 200));
  EXPECT_EQ(window_->contentView()->frame(), rect(0, 0, 300, 200));
  EXPECT_EQ(window_->level(), levelNormal);
}

TEST_F(WindowTest, GrowsByItsTitleBarAroundTheContent) {
  const auto titled = makeWindow(styleTitled, rect(10, 20, 300, 200));
  EXPECT_EQ(titled->frame(), rect(10, 20, 300, 200 + SimulatedWindowPeer::titleBarHeight));
  EXPECT_EQ(titled->contentView()->frame(), rect(0, 0, 300, 200));
  titled->setFrame(rect(0, 0, 400, 300), Redisplay::atOnce);
  EXPECT_EQ(titled->contentView()->frame().height(), 300 - SimulatedWindowPeer::titleBarHeight);
}

TEST_F(WindowTest, CanBecomeKeyWhenItHasATitleBar) {
  EXPECT_FALSE(window_->canBecomeKey());
  EXPECT_TRUE(makeWindow(styleTitled, rect(0, 0, 10, 10))->canBecomeKey());
}

TEST_F(WindowTest, ReadsAnAnimatedFrameAsFinalAtOnce) {
  window_->setFrame(rect(1, 2, 30, 40), Redisplay::atOnce, FrameChange::animated);
  EXPECT_EQ(window_->frame(), rect(1, 2, 30, 40));
  EXPECT_EQ(window_->contentView()->frame(), rect(0, 0, 30, 40));
  const PeerCall told = desktop_.windows().historyOf(*window_)->calls.back();
  EXPECT_EQ(told.frame, rect(1, 2, 30, 40));
  EXPECT_TRUE(told.display);
  EXPECT_TRUE(told.animate);
}

TEST_F(WindowTest, MovesWithoutChangingItsSize) {
  window_->setFrameOrigin({-5, 7.5});
  EXPECT_EQ(window_->frame(), rect(-5, 7.5, 300, 200));
}

TEST_F(WindowTest, TakesAFrameBelowItsMinimumFromCode) {
  window_->setContentMinSize({160, 120});
  window_->setFrame(rect(0, 0, 160, 26), Redisplay::atOnce);
  EXPECT_EQ(window_->frame().height(), 26);
}

TEST_F(WindowTest, TellsItsPeerInOrder) {
  const auto history = desktop_.windows().historyOf(*window_);
  history->calls.clear();
  window_->orderFrontRegardless();
  window_->makeKeyAndOrderFront();
  window_->orderOut();
  window_->close();
  window_.reset();
  desktop_.turnMainQueue();
  EXPECT_THAT(history->steps(),
              ElementsAre(orderFrontRegardless, makeKeyAndOrderFront, orderOut, close, destroyed));
}

TEST_F(WindowTest, IsVisibleFromOrderingInToOrderingOutOrClosing) {
  window_->orderFrontRegardless();
  EXPECT_TRUE(window_->isVisible());
  window_->orderOut();
  EXPECT_FALSE(window_->isVisible());
  window_->makeKeyAndOrderFront();
  EXPECT_TRUE(window_->isVisible());
  window_->close();
  EXPECT_FALSE(window_->isVisible());
  window_->orderFrontRegardless();
  desktop_.windows().closeWindow(*window_);
  EXPECT_FALSE(window_->isVisible());
}

TEST_F(WindowTest, CentresOnTheVisibleAreaOfItsScreen) {
  desktop_.windows().setScreens(
      {{.frame = rect(0, 0, 1000, 800), .visibleFrame = rect(0, 40, 1000, 700)}});
  window_->center();
  EXPECT_EQ(window_->frame(), rect(350, 290, 300, 200));
}

TEST_F(WindowTest, IsCentredWhereTheDesktopItselfCentresWindows) {
  desktop_.windows().setCenteredOrigin({70, 80});
  window_->center();
  EXPECT_EQ(window_->frame(), rect(70, 80, 300, 200));
}

TEST_F(WindowTest, StaysWhereItIsWhenThereIsNoScreenToCentreOn) {
  desktop_.windows().setScreens({});
  window_->center();
  EXPECT_EQ(window_->frame(), rect(10, 20, 300, 200));
  EXPECT_EQ(window_->screen(), std::nullopt);
  EXPECT_EQ(window_->backingScaleFactor(), 2);
}

TEST_F(WindowTest, HasTheScaleOfItsScreenElseOfTheMainOne) {
  const Screen low{.frame = rect(0, 0, 500, 500), .visibleFrame = {}, .backingScaleFactor = 1};
  const Screen high{.frame = rect(500, 0, 500, 500), .visibleFrame = {}, .backingScaleFactor = 2};
  desktop_.windows().setScreens({low, high});
  window_->setFrameOrigin({600, 0});
  EXPECT_EQ(window_->backingScaleFactor(), 2);
  window_->setFrameOrigin({5000, 0});
  desktop_.windows().setMainScreen(high);
  EXPECT_EQ(window_->backingScaleFactor(), 2);
}

TEST_F(WindowTest, TakesOnTheFrameSavedUnderItsName) {
  desktop_.windows().setSavedFrame("Name", rect(50, 60, 700, 500));
  window_->setFrameAutosaveName("Name");
  EXPECT_EQ(window_->frame(), rect(50, 60, 700, 500));
  EXPECT_EQ(window_->frameAutosaveName(), "Name");
}

TEST_F(WindowTest, KeepsItsFrameSavedFromThenOn) {
  window_->setFrameAutosaveName("Name");
  EXPECT_EQ(window_->frame(), rect(10, 20, 300, 200));
  desktop_.windows().moveWindow(*window_, rect(5, 6, 310, 220));
  EXPECT_EQ(desktop_.windows().savedFrame("Name"), rect(5, 6, 310, 220));
  window_->setFrameOrigin({1, 1});
  EXPECT_EQ(desktop_.windows().savedFrame("Name"), rect(1, 1, 310, 220));
}

TEST_F(WindowTest, FollowsAPersonWhoMovesOrResizesIt) {
  desktop_.windows().moveWindow(*window_, rect(15, 20, 350, 210));
  EXPECT_EQ(window_->frame(), rect(15, 20, 350, 210));
  EXPECT_EQ(window_->contentView()->frame(), rect(0, 0, 350, 210));
}

TEST_F(WindowTest, IgnoresTheEchoOfItsOwnFrameRoundedToPixels) {
  window_->setFrame(rect(10.4, 20.6, 300.5, 199.5), Redisplay::atOnce);
  window_->peerDidSetFrame(rect(10, 21, 301, 199));
  EXPECT_EQ(window_->frame(), rect(10.4, 20.6, 300.5, 199.5));
  window_->peerDidSetFrame(rect(12, 21, 301, 199));
  EXPECT_EQ(window_->frame(), rect(12, 21, 301, 199));
}

struct BackingView : View {
  void viewDidChangeBackingProperties() override { ++changes; }
  int changes = 0;
};

TEST_F(WindowTest, TellsItsViewsWhenTheBackingChanges) {
  const auto view = std::make_shared<BackingView>();
  window_->contentView()->addSubview(view);
  EXPECT_EQ(view->changes, 1);
  window_->peerDidChangeBackingProperties();
  EXPECT_EQ(view->changes, 2);
}

struct CrosshairView : View {
  using View::View;
  void resetCursorRects() override { addCursorRect(rect(0, 0, 10, 10), Cursor::crosshair); }
};

TEST_F(WindowTest, HasTheCursorOfTheFrontmostCursorRectangle) {
  const auto view = std::make_shared<CrosshairView>(rect(100, 100, 20, 20));
  window_->contentView()->addSubview(view);
  EXPECT_EQ(window_->cursorAt({105, 105}), Cursor::crosshair);
  EXPECT_EQ(window_->cursorAt({115, 115}), Cursor::arrow);
  EXPECT_EQ(window_->cursorAt({5, 5}), Cursor::arrow);
}

TEST_F(WindowTest, HasTheToolTipOfTheFrontmostViewThatHasOne) {
  const auto parent = std::make_shared<View>(rect(0, 0, 100, 100));
  const auto child = std::make_shared<View>(rect(0, 0, 50, 50));
  parent->setToolTip("parent");
  parent->addSubview(child);
  window_->contentView()->addSubview(parent);
  EXPECT_EQ(window_->toolTipAt({10, 10}), "parent");
  child->setToolTip("child");
  EXPECT_EQ(window_->toolTipAt({10, 10}), "child");
  EXPECT_EQ(window_->toolTipAt({200, 150}), "");
}

TEST_F(WindowTest, PanelFloatsWhenTold) {
  const auto panel = makeOwnedByMain<Panel>(rect(0, 0, 10, 10), styleNonactivatingPanel,
                                            BackingStore::buffered, false);
  panel->setFloatingPanel(true);
  panel->setBecomesKeyOnlyIfNeeded(true);
  EXPECT_TRUE(panel->isPanel());
  EXPECT_TRUE(panel->isFloatingPanel());
  EXPECT_TRUE(panel->becomesKeyOnlyIfNeeded());
  EXPECT_TRUE(desktop_.windows().historyOf(*panel)->isPanel);
}

}  // namespace
}  // namespace vistrel::platform
