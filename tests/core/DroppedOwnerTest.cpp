#include <gtest/gtest.h>

#include "mirror/LiveDotColors.h"
#include "tests/core/CoreTest.h"

namespace vistrel {
namespace {

/// Every road by which something can reach a mirror that its owner has let go.
class DroppedOwnerTest : public MirrorTest {
 protected:
  void dropMirror() {
    gone_ = mirror_;
    mirror_.reset();
  }

  std::weak_ptr<WindowMirrorHUDController> gone_;
};

TEST_F(DroppedOwnerTest, ContentThatArrivesLaterStartsNothing) {
  makeMirror(openSource());
  mirror_->show();
  dropMirror();
  desktop_.turnMainQueue();
  EXPECT_TRUE(capture().streams().empty());
}

TEST_F(DroppedOwnerTest, FailedContentThatArrivesLaterIsIgnored) {
  capture().failContent(Error{"whatever"});
  makeMirror(openSource());
  mirror_->show();
  desktop_.virtualTime().turnOtherQueues();  // the status is on its way to main
  const auto label = partsOf(*mirror_).statusLabel;
  dropMirror();
  desktop_.turnMainQueue();
  EXPECT_TRUE(gone_.expired());
  EXPECT_TRUE(label->isHidden());
}

TEST_F(DroppedOwnerTest, StartThatCompletesLaterKeepsItUntilThen) {
  capture().answers().hold(Request::start);
  showMirror();
  dropMirror();
  desktop_.turnMainQueue();
  EXPECT_FALSE(gone_.expired());
  EXPECT_TRUE(stream()->isHeld());
  capture().answers().release(Request::start);
  desktop_.turnMainQueue();
  EXPECT_TRUE(gone_.expired());
  EXPECT_FALSE(stream()->isHeld());
}

TEST_F(DroppedOwnerTest, StartThatFailsLaterIsHarmless) {
  capture().answers().hold(Request::start);
  capture().scriptStreams({.startFails = Error{"no"}});
  showMirror();
  dropMirror();
  capture().answers().release(Request::start);
  desktop_.turnMainQueue();
  EXPECT_TRUE(gone_.expired());
}

TEST_F(DroppedOwnerTest, StopThatCompletesLaterIsHarmless) {
  capture().answers().hold(Request::stop);
  showMirror();
  mirror_->close();
  dropMirror();
  desktop_.turnMainQueue();
  EXPECT_TRUE(gone_.expired());
  capture().answers().release(Request::stop);
  desktop_.turnMainQueue();
}

TEST_F(DroppedOwnerTest, UpdateThatCompletesLaterIsHarmless) {
  capture().answers().hold(Request::update);
  showMirror();
  windows().moveWindow(*mirror_->panel(), rect(0, 0, 1300, 200));
  EXPECT_EQ(capture().answers().heldCount(Request::update), 1U);
  mirror_->close();
  dropMirror();
  capture().answers().release(Request::update);
  desktop_.turnMainQueue();
  EXPECT_TRUE(gone_.expired());
}

TEST_F(DroppedOwnerTest, SampleThatArrivesLaterIsDropped) {
  showMirror();
  stream()->deliver({.image = brightPixels()});
  mirror_->close();
  dropMirror();
  desktop_.turnMainQueue();
  EXPECT_TRUE(gone_.expired());
}

TEST_F(DroppedOwnerTest, FrameOnItsWayToMainIsDropped) {
  showMirror();
  stream()->deliver({.image = brightPixels()});
  desktop_.virtualTime().turnOtherQueues();
  const auto content = partsOf(*mirror_).content;
  mirror_->close();
  dropMirror();
  desktop_.turnMainQueue();
  EXPECT_TRUE(gone_.expired());
  EXPECT_EQ(content->layer()->contents(), nullptr);
}

TEST_F(DroppedOwnerTest, TickOfATimerThatStillRunsIsIgnored) {
  showMirror();
  const auto timer = inside(*mirror_).freshnessTimer();
  const auto liveDot = partsOf(*mirror_).liveDot;
  dropMirror();
  desktop_.advance(10);
  EXPECT_TRUE(gone_.expired());
  EXPECT_EQ(liveDot->layer()->backgroundColor(), liveColor);
  timer->invalidate();
}

TEST_F(DroppedOwnerTest, LayoutAndDoubleClickOfItsCardAreIgnored) {
  showMirror();
  const auto card = partsOf(*mirror_).card;
  mirror_->close();
  dropMirror();
  desktop_.turnMainQueue();
  ASSERT_TRUE(gone_.expired());
  card->onLayout();
  card->onDoubleClick();
  EXPECT_EQ(card->menuProvider(), nullptr);
  EXPECT_EQ(card->snap(rect(1, 2, 3, 4)), rect(1, 2, 3, 4));
}

TEST_F(DroppedOwnerTest, CommandFromAMenuMayDropTheMirrorThatItBelongsTo) {
  showMirror();
  const auto menu = mirror_->makeContextMenu();
  const auto hide = menu->items().back();
  mirror_->close();
  dropMirror();
  desktop_.turnMainQueue();
  ASSERT_TRUE(gone_.expired());
  platform::performAction(hide);
  EXPECT_THAT(closed_, IsEmpty());
}

TEST_F(DroppedOwnerTest, FlashedTextNeedsNobodyToTakeItAway) {
  showMirror();
  deliverPicture();
  mirror_->flashStatus("text");
  const auto label = partsOf(*mirror_).statusLabel;
  mirror_->close();
  dropMirror();
  desktop_.turnMainQueue();
  EXPECT_TRUE(gone_.expired());
  desktop_.advance(3);
  EXPECT_FALSE(label->isHidden());
}

TEST_F(DroppedOwnerTest, CloseButtonIsIgnored) {
  showMirror();
  const auto button = partsOf(*mirror_).closeButton;
  mirror_->close();
  dropMirror();
  desktop_.turnMainQueue();
  button->performClick();
  EXPECT_THAT(closed_, IsEmpty());
}

TEST_F(DroppedOwnerTest, CommandMayDropTheMirrorThatItBelongsTo) {
  const auto source = openSource();
  mirror_ = WindowMirrorHUDController::make(
      source, 0,
      [this](WindowID id) {
        closed_.push_back(id);
        dropMirror();
      },
      host_);
  mirror_->show();
  desktop_.turnMainQueue();
  const auto button = partsOf(*mirror_).closeButton;
  button->performClick();
  EXPECT_THAT(closed_, ElementsAre(source->windowID));
  EXPECT_EQ(mirror_, nullptr);
  desktop_.turnMainQueue();
  EXPECT_TRUE(gone_.expired());
}

TEST_F(DroppedOwnerTest, AnswersInQuickSuccessionStartOneStreamEach) {
  capture().answers().hold(Request::content);
  makeMirror(openSource());
  mirror_->show();
  mirror_->startCapture();
  capture().answers().release(Request::content);
  desktop_.turnMainQueue();
  ASSERT_EQ(capture().streams().size(), 2U);
  EXPECT_FALSE(capture().streams().front()->isHeld());
  EXPECT_TRUE(capture().streams().back()->isRunning());
}

TEST_F(DroppedOwnerTest, LastReferenceOnAnotherQueueEndsItOnMain) {
  showMirror();
  mirror_->close();
  gone_ = mirror_;
  inside(*mirror_).sampleQueue()->async([last = std::move(mirror_)]() mutable {
    last.reset();
    EXPECT_FALSE(platform::mainQueue().isCurrent());
  });
  desktop_.turnMainQueue();
  EXPECT_TRUE(gone_.expired());
  EXPECT_THAT(windows().windowsFrontToBack(), IsEmpty());
}

}  // namespace
}  // namespace vistrel
