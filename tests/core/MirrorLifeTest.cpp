#include <gtest/gtest.h>

#include "mirror/LiveDotColors.h"
#include "tests/core/CoreTest.h"

namespace vistrel {
namespace {

using enum PeerCall::Kind;

using MirrorLifeTest = MirrorTest;

TEST_F(MirrorLifeTest, ShowingOrdersThePanelFrontWithoutActivatingTheProgram) {
  makeMirror(openSource());
  mirror_->show();
  EXPECT_TRUE(mirror_->panel()->isVisible());
  const auto history = windows().historyOf(*mirror_->panel());
  EXPECT_EQ(history->count(orderFrontRegardless), 1);
  EXPECT_EQ(history->count(makeKeyAndOrderFront), 0);
  EXPECT_TRUE(desktop_.application().activations().empty());
}

TEST_F(MirrorLifeTest, ShowingAsksForAllWindowsAndStartsTheTimer) {
  makeMirror(openSource());
  mirror_->show();
  EXPECT_THAT(capture().contentRequests(),
              ElementsAre(ContentRequest{DesktopWindows::included, ListedWindows::all}));
  ASSERT_NE(inside(*mirror_).freshnessTimer(), nullptr);
  EXPECT_EQ(inside(*mirror_).freshnessTimer()->timeInterval(), 1.0);
}

TEST_F(MirrorLifeTest, ShowingAgainReplacesTheTimerWithoutStoppingIt) {
  makeMirror(openSource());
  mirror_->show();
  const auto first = inside(*mirror_).freshnessTimer();
  mirror_->show();
  EXPECT_NE(inside(*mirror_).freshnessTimer(), first);
  EXPECT_TRUE(first->isValid());
}

TEST_F(MirrorLifeTest, ClosingStopsTheTimerAndTheStreamAndClosesThePanel) {
  showMirror();
  const auto timer = inside(*mirror_).freshnessTimer();
  const auto tap = stream();
  desktop_.journal().clear();
  mirror_->close();
  EXPECT_FALSE(timer->isValid());
  EXPECT_EQ(inside(*mirror_).freshnessTimer(), nullptr);
  EXPECT_EQ(tap->steps().back(), StreamCall::Kind::stop);
  EXPECT_EQ(inside(*mirror_).stream(), nullptr);
  EXPECT_EQ(inside(*mirror_).streamOutput(), nullptr);
  EXPECT_THAT(desktop_.journal().calls(),
              ElementsAre("Stream stopCapture", "Panel orderOut", "Panel close"));
  EXPECT_THAT(closed_, IsEmpty());
}

TEST_F(MirrorLifeTest, ClosingBeforeItWasShownIsHarmless) {
  makeMirror(openSource());
  mirror_->close();
  EXPECT_FALSE(mirror_->panel()->isVisible());
}

TEST_F(MirrorLifeTest, ClosingTellsTheOwnerOnlyWhenAPersonDoesIt) {
  showMirror();
  const WindowID id = mirror_->windowID();
  mirror_->closeClicked();
  EXPECT_THAT(closed_, ElementsAre(id));
  EXPECT_FALSE(mirror_->panel()->isVisible());
}

TEST_F(MirrorLifeTest, OwnerIsToldOnceEverythingHasStopped) {
  mirror_ = WindowMirrorHUDController::make(
      openSource(), 0, [this](WindowID) { desktop_.journal().add("onClosed"); }, host_);
  mirror_->show();
  desktop_.turnMainQueue();
  desktop_.journal().clear();
  mirror_->closeClicked();
  EXPECT_THAT(desktop_.journal().calls(),
              ElementsAre("Stream stopCapture", "Panel orderOut", "Panel close", "onClosed"));
}

TEST_F(MirrorLifeTest, CloseButtonClosesTheMirror) {
  showMirror();
  desktop_.turnMainQueue();
  const Rect frame = mirror_->panel()->frame();
  windows().moveMouse({frame.maxX() - 15, frame.maxY() - 13});
  windows().pressMouse(*mirror_->panel());
  windows().releaseMouse(*mirror_->panel());
  EXPECT_EQ(closed_.size(), 1U);
}

TEST_F(MirrorLifeTest, LettingItGoReleasesThePanelAndTheViews) {
  showMirror();
  deliverPicture();
  mirror_->close();
  const std::weak_ptr<MirrorPanel> panel = mirror_->panel();
  const std::weak_ptr<MirrorCardView> card = partsOf(*mirror_).card;
  mirror_.reset();
  desktop_.turnMainQueue();
  EXPECT_TRUE(panel.expired());
  EXPECT_TRUE(card.expired());
  EXPECT_THAT(windows().windowsFrontToBack(), IsEmpty());
  EXPECT_FALSE(stream()->isHeld());
}

TEST_F(MirrorLifeTest, StatusShowsATextAndARedDot) {
  showMirror();
  mirror_->showStatus("Something is wrong.");
  EXPECT_EQ(status(), "Something is wrong.");
  EXPECT_EQ(dot(), Color::systemRed());
}

TEST_F(MirrorLifeTest, StatusGoesWithTheNextFrame) {
  showMirror();
  mirror_->showStatus("Something is wrong.");
  deliverPicture();
  EXPECT_EQ(status(), "");
  EXPECT_EQ(dot(), liveColor);
}

class RollUpTest : public MirrorTest {
 protected:
  RollUpTest() {
    showMirror();
    mirror_->panel()->setFrame(rect(100, 500, 340, 196), Redisplay::atOnce);
  }

  PeerCall lastFrameTold() {
    const auto& calls = windows().historyOf(*mirror_->panel())->calls;
    const auto last = std::find_if(calls.rbegin(), calls.rend(), [](const PeerCall& call) {
      return call.kind == frameDidChange;
    });
    return *last;
  }
};

TEST_F(RollUpTest, LeavesTheTitleBarUnderTheTopEdgeAndComesBack) {
  mirror_->toggleRollUp();
  EXPECT_TRUE(inside(*mirror_).rolledUp());
  EXPECT_EQ(mirror_->panel()->frame(), rect(100, 670, 340, 26));
  EXPECT_EQ(inside(*mirror_).frameBeforeRollUp(), rect(100, 500, 340, 196));
  mirror_->toggleRollUp();
  EXPECT_FALSE(inside(*mirror_).rolledUp());
  EXPECT_EQ(mirror_->panel()->frame(), rect(100, 500, 340, 196));
  EXPECT_EQ(inside(*mirror_).frameBeforeRollUp(), rect(100, 500, 340, 196));
}

TEST_F(RollUpTest, IsDisplayedAndAnimated) {
  mirror_->toggleRollUp();
  EXPECT_TRUE(lastFrameTold().display);
  EXPECT_TRUE(lastFrameTold().animate);
  mirror_->toggleRollUp();
  EXPECT_EQ(lastFrameTold().frame, rect(100, 500, 340, 196));
  EXPECT_TRUE(lastFrameTold().animate);
}

TEST_F(RollUpTest, LowersTheMinimumToTheTitleBar) {
  mirror_->toggleRollUp();
  EXPECT_EQ(mirror_->panel()->contentMinSize(), (Size{160, 26}));
  mirror_->toggleRollUp();
  EXPECT_EQ(mirror_->panel()->contentMinSize(), (Size{160, 120}));
}

TEST_F(RollUpTest, HidesEverythingBelowTheTitleBar) {
  mirror_->showStatus("text");
  mirror_->toggleRollUp();
  desktop_.turnMainQueue();
  EXPECT_TRUE(partsOf(*mirror_).content->isHidden());
  EXPECT_TRUE(partsOf(*mirror_).grip->isHidden());
  EXPECT_TRUE(partsOf(*mirror_).statusLabel->isHidden());
  EXPECT_FALSE(partsOf(*mirror_).titleBar->isHidden());
  mirror_->toggleRollUp();
  desktop_.turnMainQueue();
  EXPECT_FALSE(partsOf(*mirror_).content->isHidden());
  EXPECT_FALSE(partsOf(*mirror_).grip->isHidden());
  EXPECT_TRUE(partsOf(*mirror_).statusLabel->isHidden());
}

TEST_F(RollUpTest, HidesAndShowsAlsoWhenTheFrameStaysAsItIs) {
  mirror_->panel()->setFrame(rect(100, 670, 340, 26), Redisplay::atOnce);
  for (const bool hidden : {true, false}) {
    mirror_->toggleRollUp();
    desktop_.turnMainQueue();
    EXPECT_EQ(mirror_->panel()->frame(), rect(100, 670, 340, 26));
    EXPECT_EQ(partsOf(*mirror_).content->isHidden(), hidden);
  }
}

TEST_F(RollUpTest, KeepsThePlaceAndWidthOfNowWhenItComesBack) {
  mirror_->toggleRollUp();
  windows().moveWindow(*mirror_->panel(), rect(7, 300, 500, 26));
  mirror_->toggleRollUp();
  EXPECT_EQ(mirror_->panel()->frame(), rect(7, 130, 500, 196));
}

TEST_F(RollUpTest, KeepsGripAndStatusHiddenWhileItIsResized) {
  mirror_->toggleRollUp();
  desktop_.turnMainQueue();
  mirror_->showStatus("text");
  windows().moveWindow(*mirror_->panel(), rect(7, 300, 3000, 26));
  desktop_.turnMainQueue();
  EXPECT_TRUE(partsOf(*mirror_).grip->isHidden());
  EXPECT_TRUE(partsOf(*mirror_).statusLabel->isHidden());
  EXPECT_EQ(inside(*mirror_).captureWidth(), 1000);
}

TEST_F(RollUpTest, GoesOnShowingFrames) {
  mirror_->toggleRollUp();
  deliverPicture();
  EXPECT_NE(shownImage(), nullptr);
  EXPECT_EQ(dot(), liveColor);
}

}  // namespace
}  // namespace vistrel
