#include <gtest/gtest.h>

#include "mirror/LiveDotColors.h"
#include "tests/core/CoreTest.h"

namespace vistrel {
namespace {

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
  EXPECT_EQ(inside(*mirror_).captureWidth(), 2001);
  EXPECT_EQ(inside(*mirror_).captureHeight(), 1200);
  EXPECT_EQ(stream()->configuration(), configurationOf(2001, 1200));
  EXPECT_EQ(stream()->windowID(), source->windowID);
  EXPECT_THAT(stream()->steps(), ElementsAre(addOutput, start));
  EXPECT_EQ(stream()->calls().front().type, platform::StreamOutputType::screen);
  EXPECT_EQ(stream()->sampleHandlerQueue(), inside(*mirror_).sampleQueue());
  EXPECT_NE(inside(*mirror_).stream(), nullptr);
  EXPECT_NE(inside(*mirror_).streamOutput(), nullptr);
}

TEST_F(StartCaptureTest, CapturesAtLeastTwoPixelsEachWay) {
  show(openSource([](ShareableWindow& w) { w.frame = rect(0, 0, 0.5, 0.5); }));
  EXPECT_EQ(inside(*mirror_).captureWidth(), 2);
  EXPECT_EQ(inside(*mirror_).captureHeight(), 2);
}

TEST_F(StartCaptureTest, TakesTheSourcesSizeOfNow) {
  const auto source = openSource();
  makeMirror(source);
  capture().changeWindow(source->windowID,
                         [](ShareableWindow& w) { w.frame = rect(0, 0, 700, 300); });
  mirror_->show();
  desktop_.turnMainQueue();
  EXPECT_EQ(inside(*mirror_).captureWidth(), 700);
  EXPECT_EQ(inside(*mirror_).captureHeight(), 300);
  EXPECT_EQ(inside(*mirror_).sourcePointSize(), (Size{1000, 500}));
}

TEST_F(StartCaptureTest, UsesTheMainScreensScaleWhenThePanelIsOnNoScreen) {
  makeMirror(openSource());
  mirror_->panel()->setFrameOrigin({9000, 9000});
  windows().setMainScreen(platform::Screen{
      .frame = rect(0, 0, 10, 10), .visibleFrame = rect(0, 0, 10, 10), .backingScaleFactor = 1.5});
  mirror_->show();
  desktop_.turnMainQueue();
  EXPECT_EQ(inside(*mirror_).captureWidth(), 1500);
}

TEST_F(StartCaptureTest, UsesADoubleScaleWithoutAnyScreen) {
  windows().setScreens({});
  show();
  EXPECT_EQ(inside(*mirror_).captureWidth(), 2000);
  EXPECT_EQ(inside(*mirror_).captureHeight(), 1000);
}

TEST_F(StartCaptureTest, FindsASourceThatIsOffScreen) {
  show(openSource([](ShareableWindow& w) { w.isOnScreen = false; }));
  EXPECT_NE(inside(*mirror_).stream(), nullptr);
}

TEST_F(StartCaptureTest, TakesTheFirstOfWindowsWithTheSameNumber) {
  const auto source = openSource();
  capture().openWindow({.windowID = source->windowID, .frame = rect(0, 0, 5, 5)});
  show(source);
  EXPECT_EQ(inside(*mirror_).captureWidth(), 1000);
}

TEST_F(StartCaptureTest, SaysThatAMissingSourceIsGone) {
  const auto source = openSource();
  capture().closeWindow(source->windowID);
  show(source);
  EXPECT_EQ(status(), gone);
  EXPECT_EQ(dot(), Color::systemRed());
  EXPECT_EQ(inside(*mirror_).stream(), nullptr);
  EXPECT_EQ(inside(*mirror_).captureWidth(), 0);
}

TEST_F(StartCaptureTest, SaysThatTheSourceIsGoneWhenTheServiceFails) {
  capture().failContent(Error{"whatever"});
  show();
  EXPECT_EQ(status(), gone);
  EXPECT_EQ(inside(*mirror_).stream(), nullptr);
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
  EXPECT_EQ(inside(*mirror_).stream(), nullptr);
  EXPECT_EQ(inside(*mirror_).streamOutput(), nullptr);
  EXPECT_THAT(stream()->steps(), ElementsAre(addOutput));
  EXPECT_FALSE(stream()->isHeld());
  EXPECT_EQ(inside(*mirror_).captureWidth(), 1000);
}

TEST_F(StartCaptureTest, SaysWhatAFailedStartSays) {
  capture().scriptStreams({.startFails = Error{"The person said no."}});
  show();
  EXPECT_EQ(status(), "Screen Recording permission is required.\nThe person said no.");
  EXPECT_NE(inside(*mirror_).stream(), nullptr);
  EXPECT_NE(inside(*mirror_).streamOutput(), nullptr);
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

TEST_F(StartCaptureTest, TouchesTheStatusOnMainAloneWhenTheStreamHasStarted) {
  capture().answers().hold(Request::start);
  show();
  mirror_->showStatus("old");
  capture().answers().release(Request::start);
  desktop_.virtualTime().turnOtherQueues();
  EXPECT_TRUE(stream()->isRunning());
  EXPECT_EQ(status(), "old");
  desktop_.turnMainQueue();
  EXPECT_EQ(status(), "");
}

TEST_F(StartCaptureTest, TouchesTheStatusOnMainAloneWhenTheStreamFailedToStart) {
  capture().answers().hold(Request::start);
  capture().scriptStreams({.startFails = Error{"no"}});
  show();
  capture().answers().release(Request::start);
  desktop_.virtualTime().turnOtherQueues();
  EXPECT_EQ(status(), "");
  desktop_.turnMainQueue();
  EXPECT_EQ(status(), "Screen Recording permission is required.\nno");
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
  EXPECT_NE(inside(*mirror_).stream(), nullptr);
  EXPECT_EQ(status(), "");
  desktop_.advance(3);
  EXPECT_EQ(dot(), staleColor);
}

TEST_F(StartCaptureTest, StoppingLeavesThePictureTheSizeAndTheTimeAsTheyAre) {
  show();
  deliverPicture();
  const auto image = inside(*mirror_).lastImage();
  const auto time = inside(*mirror_).lastFrameAt();
  mirror_->stopCapture();
  desktop_.turnMainQueue();
  EXPECT_EQ(inside(*mirror_).stream(), nullptr);
  EXPECT_EQ(inside(*mirror_).streamOutput(), nullptr);
  EXPECT_EQ(inside(*mirror_).lastImage(), image);
  EXPECT_EQ(inside(*mirror_).lastFrameAt(), time);
  EXPECT_EQ(inside(*mirror_).captureWidth(), 1000);
  EXPECT_EQ(inside(*mirror_).captureHeight(), 500);
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

}  // namespace
}  // namespace vistrel
