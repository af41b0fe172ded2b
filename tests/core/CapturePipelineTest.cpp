#include <gtest/gtest.h>

#include "mirror/LiveDotColors.h"
#include "tests/core/CoreTest.h"

namespace vistrel {
namespace {

using platform::StreamConfiguration;
using enum StreamCall::Kind;

constexpr const char* gone = "Source window is no longer available.";

class StartCaptureTest : public MirrorTest {
 protected:
  void show(const WindowRecord& source) {
    makeMirror(source);
    mirror_->show();
    desktop_.turnMainQueue();
  }
  void show() { show(openSource()); }
};

TEST_F(StartCaptureTest, StreamsTheSourceAtItsOwnPixelSize) {
  windows().setScreens({{.frame = rect(0, 0, 1440, 900),
                         .visibleFrame = rect(0, 0, 1440, 900),
                         .backingScaleFactor = 2}});
  const auto source = openSource([](ShareableWindow& w) { w.frame = rect(0, 0, 1000.7, 600.2); });
  show(source);
  EXPECT_EQ(mirror_->captureWidth(), 2001);
  EXPECT_EQ(mirror_->captureHeight(), 1200);
  const StreamConfiguration expected{.width = 2001,
                                     .height = 1200,
                                     .minimumFrameInterval = {1, 30},
                                     .queueDepth = 6,
                                     .showsCursor = true,
                                     .scalesToFit = true,
                                     .pixelFormat = 0x42475241};
  EXPECT_EQ(stream()->configuration(), expected);
  EXPECT_EQ(stream()->windowID(), source->windowID);
  EXPECT_THAT(stream()->steps(), ElementsAre(addOutput, start));
  EXPECT_EQ(stream()->calls().front().type, platform::StreamOutputType::screen);
  EXPECT_EQ(stream()->sampleHandlerQueue(), mirror_->sampleQueue());
  EXPECT_NE(mirror_->stream(), nullptr);
  EXPECT_NE(mirror_->streamOutput(), nullptr);
}

TEST_F(StartCaptureTest, CapturesAtLeastTwoPixelsEachWay) {
  show(openSource([](ShareableWindow& w) { w.frame = rect(0, 0, 0.5, 0.5); }));
  EXPECT_EQ(mirror_->captureWidth(), 2);
  EXPECT_EQ(mirror_->captureHeight(), 2);
}

TEST_F(StartCaptureTest, TakesTheSourcesSizeOfNow) {
  const auto source = openSource();
  makeMirror(source);
  capture().changeWindow(source->windowID,
                         [](ShareableWindow& w) { w.frame = rect(0, 0, 700, 300); });
  mirror_->show();
  desktop_.turnMainQueue();
  EXPECT_EQ(mirror_->captureWidth(), 700);
  EXPECT_EQ(mirror_->captureHeight(), 300);
  EXPECT_EQ(mirror_->sourcePointSize(), (Size{1000, 500}));
}

TEST_F(StartCaptureTest, UsesTheMainScreensScaleWhenThePanelIsOnNoScreen) {
  makeMirror(openSource());
  mirror_->panel()->setFrameOrigin({9000, 9000});
  windows().setMainScreen(platform::Screen{
      .frame = rect(0, 0, 10, 10), .visibleFrame = rect(0, 0, 10, 10), .backingScaleFactor = 1.5});
  mirror_->show();
  desktop_.turnMainQueue();
  EXPECT_EQ(mirror_->captureWidth(), 1500);
}

TEST_F(StartCaptureTest, UsesADoubleScaleWithoutAnyScreen) {
  windows().setScreens({});
  show();
  EXPECT_EQ(mirror_->captureWidth(), 2000);
  EXPECT_EQ(mirror_->captureHeight(), 1000);
}

TEST_F(StartCaptureTest, FindsASourceThatIsOffScreen) {
  show(openSource([](ShareableWindow& w) { w.isOnScreen = false; }));
  EXPECT_NE(mirror_->stream(), nullptr);
}

TEST_F(StartCaptureTest, TakesTheFirstOfWindowsWithTheSameNumber) {
  const auto source = openSource();
  capture().openWindow({.windowID = source->windowID, .frame = rect(0, 0, 5, 5)});
  show(source);
  EXPECT_EQ(mirror_->captureWidth(), 1000);
}

TEST_F(StartCaptureTest, SaysThatAMissingSourceIsGone) {
  const auto source = openSource();
  capture().closeWindow(source->windowID);
  show(source);
  EXPECT_EQ(status(), gone);
  EXPECT_EQ(dot(), Color::systemRed());
  EXPECT_EQ(mirror_->stream(), nullptr);
  EXPECT_EQ(mirror_->captureWidth(), 0);
}

TEST_F(StartCaptureTest, SaysThatTheSourceIsGoneWhenTheServiceFails) {
  capture().failContent(Error{"whatever"});
  show();
  EXPECT_EQ(status(), gone);
  EXPECT_EQ(mirror_->stream(), nullptr);
}

TEST_F(StartCaptureTest, TurnsARedDotAmberWhenNoFrameArrives) {
  capture().failContent(Error{"whatever"});
  show();
  EXPECT_EQ(dot(), Color::systemRed());
  desktop_.advance(1);
  EXPECT_EQ(dot(), staleColor);
  EXPECT_EQ(status(), gone);
}

TEST_F(StartCaptureTest, DropsAStreamThatTakesNoOutput) {
  capture().scriptStreams({.addingOutputFails = Error{"no"}});
  show();
  EXPECT_EQ(status(), "Couldn't attach to the window stream.");
  EXPECT_EQ(mirror_->stream(), nullptr);
  EXPECT_EQ(mirror_->streamOutput(), nullptr);
  EXPECT_THAT(stream()->steps(), ElementsAre(addOutput));
  EXPECT_FALSE(stream()->isHeld());
  EXPECT_EQ(mirror_->captureWidth(), 1000);
}

TEST_F(StartCaptureTest, SaysWhatAFailedStartSays) {
  capture().scriptStreams({.startFails = Error{"The person said no."}});
  show();
  EXPECT_EQ(status(), "Screen Recording permission is required.\nThe person said no.");
  EXPECT_NE(mirror_->stream(), nullptr);
  EXPECT_NE(mirror_->streamOutput(), nullptr);
}

TEST_F(StartCaptureTest, HidesTheStatusOnceTheStreamHasStarted) {
  makeMirror(openSource());
  mirror_->showStatus("old");
  mirror_->show();
  desktop_.turnMainQueue();
  EXPECT_EQ(status(), "");
  EXPECT_EQ(dot(), Color::systemRed());
}

TEST_F(StartCaptureTest, TouchesTheStatusOnMainAlone) {
  capture().failContent(Error{"whatever"});
  makeMirror(openSource());
  mirror_->show();
  desktop_.virtualTime().turnOtherQueues();
  EXPECT_EQ(status(), "");
  desktop_.turnMainQueue();
  EXPECT_EQ(status(), gone);
}

TEST_F(StartCaptureTest, LeavesARunningStreamAlone) {
  show();
  const auto first = stream();
  mirror_->startCapture();
  desktop_.turnMainQueue();
  EXPECT_NE(stream(), first);
  EXPECT_THAT(first->steps(), ElementsAre(addOutput, start));
}

TEST_F(StartCaptureTest, StopsAndReplacesAStreamThatFailedToStart) {
  capture().scriptStreams({.startFails = Error{"no"}});
  show();
  const auto failed = stream();
  capture().scriptStreams({});
  mirror_->stopCapture();
  mirror_->startCapture();
  desktop_.turnMainQueue();
  EXPECT_THAT(failed->steps(), ElementsAre(addOutput, start, stop));
  EXPECT_TRUE(stream()->isRunning());
  EXPECT_EQ(status(), "");
}

TEST_F(StartCaptureTest, KeepsItsStreamWhenTheSystemEndsIt) {
  show();
  deliverPicture();
  stream()->endBySystem(Error{"closed"});
  desktop_.turnMainQueue();
  EXPECT_NE(mirror_->stream(), nullptr);
  EXPECT_EQ(status(), "");
  desktop_.advance(3);
  EXPECT_EQ(dot(), staleColor);
}

TEST_F(StartCaptureTest, StoppingLeavesThePictureTheSizeAndTheTimeAsTheyAre) {
  show();
  deliverPicture();
  const auto image = mirror_->lastImage();
  const auto time = mirror_->lastFrameAt();
  mirror_->stopCapture();
  desktop_.turnMainQueue();
  EXPECT_EQ(mirror_->stream(), nullptr);
  EXPECT_EQ(mirror_->streamOutput(), nullptr);
  EXPECT_EQ(mirror_->lastImage(), image);
  EXPECT_EQ(mirror_->lastFrameAt(), time);
  EXPECT_EQ(mirror_->captureWidth(), 1000);
  EXPECT_EQ(mirror_->captureHeight(), 500);
  mirror_->stopCapture();
  EXPECT_THAT(stream()->steps(), ElementsAre(addOutput, start, stop));
}

using FatalCaptureSizeDeathTest = StartCaptureTest;

TEST_F(FatalCaptureSizeDeathTest, SourceOfAnImpossibleSizeEndsTheProgramSilently) {
  const auto source = openSource();
  makeMirror(source);
  for (const double width : {HUGE_VAL, std::nan(""), 1e300}) {
    capture().changeWindow(source->windowID,
                           [width](ShareableWindow& w) { w.frame.size.width = width; });
    EXPECT_EXIT(
        {
          mirror_->show();
          desktop_.turnMainQueue();
        },
        testing::KilledBySignal(SIGABRT), "^$");
  }
}

class FramesTest : public MirrorTest {
 protected:
  FramesTest() { showMirror(); }

  /// Whether a frame replaces the picture that is shown.
  bool isShown(Frame frame) {
    const auto before = shownImage();
    deliver(std::move(frame));
    EXPECT_EQ(shownImage(), mirror_->lastImage());
    return shownImage() != before;
  }
};

TEST_F(FramesTest, BecomeThePicture) {
  EXPECT_TRUE(isShown({.image = brightPixels()}));
  EXPECT_EQ(mirror_->lastFrameAt(), platform::now());
  EXPECT_EQ(dot(), liveColor);
}

TEST_F(FramesTest, AreHandledOnTheSampleQueueAndShownOnMain) {
  stream()->deliver({.image = brightPixels()});
  desktop_.virtualTime().turnOtherQueues();
  EXPECT_EQ(shownImage(), nullptr);
  EXPECT_EQ(mirror_->lastImage(), nullptr);
  desktop_.turnMainQueue();
  EXPECT_NE(shownImage(), nullptr);
}

TEST_F(FramesTest, AreDroppedWhenInvalid) {
  EXPECT_FALSE(isShown({.image = brightPixels(), .valid = false}));
}

TEST_F(FramesTest, AreDroppedUnlessComplete) {
  using platform::simulated::frameWithStatus;
  for (const std::int64_t status : {1, 2, 3, 4, 5, 77}) {
    EXPECT_FALSE(isShown(frameWithStatus(brightPixels(), status))) << status;
  }
  EXPECT_TRUE(isShown(frameWithStatus(brightPixels(), std::int64_t{0})));
}

TEST_F(FramesTest, AreShownWhateverOtherAttachmentsSay) {
  using platform::simulated::frameWithStatus;
  EXPECT_TRUE(isShown({.image = brightPixels(), .attachments = std::nullopt}));
  EXPECT_TRUE(isShown({.image = brightPixels(), .attachments = {{}}}));
  EXPECT_TRUE(isShown(
      {.image = brightPixels(), .attachments = std::vector<platform::SampleAttachments>{}}));
  EXPECT_TRUE(isShown(frameWithStatus(brightPixels(), 1.0)));
  EXPECT_TRUE(isShown(frameWithStatus(brightPixels(), std::string("idle"))));
  EXPECT_TRUE(isShown(platform::simulated::frameWithWrongDamage(brightPixels())));
}

TEST_F(FramesTest, AreDroppedWithoutAnImageBuffer) { EXPECT_FALSE(isShown({.image = nullptr})); }

TEST_F(FramesTest, AreDroppedWhenNoImageCanBeMade) {
  capture().failImages(true);
  EXPECT_FALSE(isShown({.image = brightPixels()}));
  capture().failImages(false);
  EXPECT_FALSE(isShown({.image = platform::simulated::unreachablePixels(40, 20)}));
  EXPECT_TRUE(isShown({.image = brightPixels()}));
}

TEST_F(FramesTest, AreIgnoredWhenTheyAreNoScreenSamples) {
  stream()->deliver({.image = brightPixels()}, platform::StreamOutputType::audio);
  desktop_.turnMainQueue();
  EXPECT_EQ(shownImage(), nullptr);
}

TEST_F(FramesTest, AreShownWhenBlackAsLongAsThereIsNoPicture) {
  EXPECT_TRUE(isShown({.image = blackPixels(40, 20)}));
}

TEST_F(FramesTest, AreDroppedWhenBlackOnceThereIsAPicture) {
  EXPECT_TRUE(isShown({.image = brightPixels()}));
  EXPECT_FALSE(isShown({.image = blackPixels(40, 20)}));
  EXPECT_TRUE(isShown({.image = brightPixels()}));
}

TEST_F(FramesTest, AreTestedForBlackAlsoAfterARecapture) {
  EXPECT_TRUE(isShown({.image = brightPixels()}));
  mirror_->stopCapture();
  mirror_->startCapture();
  desktop_.turnMainQueue();
  EXPECT_FALSE(isShown({.image = blackPixels(40, 20)}));
}

TEST_F(FramesTest, AreNotTestedForBlackInAnotherPixelFormat) {
  EXPECT_TRUE(isShown({.image = brightPixels()}));
  EXPECT_TRUE(isShown(
      {.image = platform::simulated::solidPixels(40, 20, {0, 0, 0, 255}, /*"420v"*/ 0x34323076)}));
}

TEST_F(FramesTest, MayChangeTheirSizeInFlight) {
  for (const std::int64_t side : {40, 400, 2, 1, 77}) {
    EXPECT_TRUE(isShown({.image = brightPixels(side, side)})) << side;
  }
}

TEST_F(FramesTest, ThatAreDroppedLeaveNoTrace) {
  deliverPicture();
  const auto time = mirror_->lastFrameAt();
  mirror_->showStatus("text");
  desktop_.advance(0.5);
  deliver({.image = blackPixels(40, 20)});
  deliver({.image = nullptr});
  EXPECT_EQ(mirror_->lastFrameAt(), time);
  EXPECT_EQ(status(), "text");
  EXPECT_EQ(dot(), Color::systemRed());
}

TEST_F(FramesTest, ThatWereHandledBeforeAStopAreStillShown) {
  stream()->deliver({.image = brightPixels()});
  desktop_.virtualTime().turnOtherQueues();
  mirror_->stopCapture();
  desktop_.turnMainQueue();
  EXPECT_NE(shownImage(), nullptr);
}

class FreshnessDotTest : public MirrorTest {
 protected:
  FreshnessDotTest() { showMirror(); }
};

TEST_F(FreshnessDotTest, TurnsAmberAtTheFirstTickWithoutAFrame) {
  EXPECT_EQ(dot(), liveColor);
  desktop_.advance(1);
  EXPECT_EQ(dot(), staleColor);
}

TEST_F(FreshnessDotTest, StaysGreenAtOneAndAHalfSecondsAndTurnsAmberAfter) {
  deliverPicture();
  desktop_.advance(0.5);
  deliverPicture();
  desktop_.advance(1.5);  // ticks half a second and one and a half after the frame
  EXPECT_EQ(dot(), liveColor);
  desktop_.advance(1);
  EXPECT_EQ(dot(), staleColor);
}

TEST_F(FreshnessDotTest, TurnsAmberWhenTheFrameIsOneAndSixTenthsOld) {
  desktop_.advance(0.4);
  deliverPicture();
  desktop_.advance(1.5);  // a tick when it is 0.6 old
  EXPECT_EQ(dot(), liveColor);
  desktop_.advance(0.1);  // a tick when it is 1.6 old
  EXPECT_EQ(dot(), staleColor);
}

TEST_F(FreshnessDotTest, TurnsGreenWithTheNextFrame) {
  desktop_.advance(5);
  EXPECT_EQ(dot(), staleColor);
  deliverPicture();
  EXPECT_EQ(dot(), liveColor);
}

TEST_F(FreshnessDotTest, ShowsNoTextWhenItTurnsAmber) {
  desktop_.advance(5);
  EXPECT_EQ(status(), "");
  EXPECT_EQ(capture().streams().size(), 1U);
}

TEST_F(FreshnessDotTest, StaysAsItIsOnceTheMirrorIsClosed) {
  deliverPicture();
  mirror_->close();
  desktop_.advance(10);
  EXPECT_EQ(dot(), liveColor);
}

class ResolutionGrowthTest : public MirrorTest {
 protected:
  ResolutionGrowthTest() { showMirror(); }

  void widen(double width) {
    windows().moveWindow(*mirror_->panel(), rect(0, 0, width, 200));
    desktop_.turnMainQueue();
  }
};

TEST_F(ResolutionGrowthTest, FollowsAPanelThatIsMuchWiderThanTheCapture) {
  widen(1150);
  EXPECT_THAT(stream()->steps(), ElementsAre(addOutput, start));
  widen(1151);
  EXPECT_THAT(stream()->steps(), ElementsAre(addOutput, start, update));
  EXPECT_EQ(mirror_->captureWidth(), 1151);
  EXPECT_EQ(mirror_->captureHeight(), 575);
  const StreamConfiguration expected{.width = 1151,
                                     .height = 575,
                                     .minimumFrameInterval = {1, 30},
                                     .queueDepth = 6,
                                     .showsCursor = true,
                                     .scalesToFit = true,
                                     .pixelFormat = platform::pixelFormat32BGRA};
  EXPECT_EQ(stream()->configuration(), expected);
}

TEST_F(ResolutionGrowthTest, NeverShrinks) {
  widen(1300);
  widen(200);
  EXPECT_EQ(mirror_->captureWidth(), 1300);
  EXPECT_THAT(stream()->steps(), ElementsAre(addOutput, start, update));
}

TEST_F(ResolutionGrowthTest, StopsAtTwiceTheSource) {
  widen(9000);
  EXPECT_EQ(mirror_->captureWidth(), 2000);
  widen(9500);
  EXPECT_EQ(mirror_->captureWidth(), 2000);
  EXPECT_THAT(stream()->steps(), ElementsAre(addOutput, start, update));
}

TEST_F(ResolutionGrowthTest, IsUndoneByARecapture) {
  widen(1300);
  mirror_->stopCapture();
  mirror_->startCapture();
  desktop_.turnMainQueue();
  EXPECT_EQ(mirror_->captureWidth(), 1000);
}

TEST_F(ResolutionGrowthTest, DoesNothingWithoutAStream) {
  mirror_->stopCapture();
  widen(1300);
  EXPECT_EQ(mirror_->captureWidth(), 1000);
}

TEST_F(ResolutionGrowthTest, DoesNothingBeforeACaptureWasEverStarted) {
  makeMirror(openSource());
  widen(1300);
  EXPECT_EQ(mirror_->captureWidth(), 0);
}

TEST_F(ResolutionGrowthTest, WaitsWhileThePanelIsRolledUp) {
  mirror_->toggleRollUp();
  desktop_.turnMainQueue();
  widen(1300);
  EXPECT_EQ(mirror_->captureWidth(), 1000);
}

using FatalGrowthDeathTest = ResolutionGrowthTest;

TEST_F(FatalGrowthDeathTest, PanelOfAnImpossibleWidthEndsTheProgramSilently) {
  EXPECT_EXIT(mirror_->panel()->setFrame(rect(0, 0, 1e300, 200), true),
              testing::KilledBySignal(SIGABRT), "^$");
}

}  // namespace
}  // namespace vistrel
