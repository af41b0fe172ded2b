#include "tests/macos/scenarios/MirrorScenario.h"

namespace vistrel {
namespace {

using testing::Contains;
using testing::SizeIs;

/// The road from a row of the picker to a picture.
using Mirror = MirrorScenario;

TEST_F(Mirror, ShowsAPanelThatFloatsAboveEverything) {
  runWithMirror([&] {
    ASSERT_THAT(panels(), SizeIs(1));
    EXPECT_TRUE(
        said({"VLPanel#1 initWithContentRect:{{0,0},{340,196}} styleMask:136 backing:2 defer:0",
              "VLPanel#1 setReleasedWhenClosed:0", "VLPanel#1 setFloatingPanel:1",
              "VLPanel#1 setLevel:25", "VLPanel#1 setCollectionBehavior:257",
              "VLPanel#1 orderFrontRegardless"}));
    NSPanel* const shown = static_cast<NSPanel*>(panel());
    EXPECT_EQ(shown.level, 25);
    EXPECT_EQ(shown.collectionBehavior, 257U);
    EXPECT_TRUE(shown.canBecomeKeyWindow);
    EXPECT_TRUE(shown.becomesKeyOnlyIfNeeded);
    EXPECT_FALSE(shown.hidesOnDeactivate);
    EXPECT_FALSE(shown.isOpaque);
    EXPECT_TRUE(shown.hasShadow);
    EXPECT_EQ(fake::describe(shown.contentMinSize), "{160,120}");
  });
}

TEST_F(Mirror, ShowsACardWithThePictureInItsProportions) {
  runWithMirror([&] {
    CALayer* const frame = card().layer;
    EXPECT_EQ(frame.cornerRadius, 10);
    EXPECT_TRUE(frame.masksToBounds);
    EXPECT_EQ(frame.borderWidth, 1);
    CALayer* const content = card().subviews.firstObject.layer;
    EXPECT_EQ(utf8(content.contentsGravity), utf8(kCAGravityResizeAspect));
    EXPECT_EQ(utf8(content.magnificationFilter), utf8(kCAFilterTrilinear));
    EXPECT_EQ(utf8(content.minificationFilter), utf8(kCAFilterTrilinear));
  });
}

TEST_F(Mirror, AsksTheServiceForTheWindowAlone) {
  runWithMirror([&] {
    EXPECT_TRUE(said(
        {"SCShareableContent getShareableContentExcludingDesktopWindows:0 onScreenWindowsOnly:0",
         "service: SCContentFilter#1 initWithDesktopIndependentWindow:SCWindow#",
         "service: SCStreamConfiguration#1 setWidth:2000",
         "service: SCStreamConfiguration#1 setHeight:1000",
         "service: SCStreamConfiguration#1 setMinimumFrameInterval:1/30",
         "service: SCStreamConfiguration#1 setQueueDepth:6",
         "service: SCStreamConfiguration#1 setShowsCursor:1",
         "service: SCStreamConfiguration#1 setScalesToFit:1",
         "service: SCStreamConfiguration#1 setPixelFormat:1111970369",
         "service: SCStream#1 initWithFilter:SCContentFilter#1 "
         "configuration:SCStreamConfiguration#1 delegate:VLStreamAdaptor#1",
         "service: SCStream#1 addStreamOutput:VLStreamAdaptor#1 type:0 sampleHandlerQueue:VLQueue#",
         "service: SCStream#1 startCaptureWithCompletionHandler:a block"}));
    EXPECT_EQ(stream().filter.window.windowID, 77U);
    EXPECT_TRUE(stream().isCapturing);
  });
}

TEST_F(Mirror, ShowsWhatTheServiceDelivers) {
  runWithMirror([&] {
    EXPECT_TRUE(picture() == nil);
    fake::forgetMessages();
    fake::deliver(stream(), {});
    EXPECT_TRUE(said({"com.tollbeck.vistrel.capture: CIContext#1 createCGImage:CIImage#1 "
                      "fromRect:{{0,0},{40,20}}",
                      "CALayer#2 setContents:VLImage#1"}));
    EXPECT_EQ(fake::describe(picture()), "VLImage#1");
    EXPECT_EQ(dot("Live"), live);
  });
}

TEST_F(Mirror, TakesFramesThatAreCompleteOrSayNothing) {
  runWithMirror([&] {
    for (const SCFrameStatus status :
         {SCFrameStatusIdle, SCFrameStatusBlank, SCFrameStatusSuspended, SCFrameStatusStarted,
          SCFrameStatusStopped}) {
      fake::deliver(stream(), {.status = status});
      EXPECT_TRUE(picture() == nil) << status;
    }
    fake::deliver(stream(), {.status = SCFrameStatusComplete, .hasPicture = false});
    EXPECT_TRUE(picture() == nil);
    fake::deliver(stream(), {.status = SCFrameStatusComplete});
    const id first = picture();
    EXPECT_TRUE(first != nil);
    fake::deliver(stream(), {.status = std::nullopt});
    EXPECT_TRUE(picture() != first);
  });
}

TEST_F(Mirror, TurnsItsDotWhenFramesCease) {
  runWithMirror([&] {
    fake::deliver(stream(), {});
    fake::advance(1);
    EXPECT_EQ(dot("Live"), live);
    fake::advance(2);
    EXPECT_EQ(dot("Not updating"), stale);
    fake::deliver(stream(), {});
    EXPECT_EQ(dot("Live"), live);
  });
}

TEST_F(Mirror, StopsItsStreamWhenItIsClosed) {
  runWithMirror([&] {
    fake::deliver(stream(), {});
    fake::forgetMessages();
    fake::press(closeButton());
    EXPECT_TRUE(said({"NSTimer#1 invalidate", "SCStream#1 stopCaptureWithCompletionHandler:a block",
                      "VLPanel#1 orderOut:nil", "VLPanel#1 close"}));
  });
}

TEST_F(Mirror, SaysWhyTheStreamDoesNotStart) {
  desktop().startError = "The user declined";
  runWithMirror([&] {
    EXPECT_THAT(shownTexts(card()),
                Contains("Screen Recording permission is required.\nThe user declined"));
    EXPECT_EQ(dot("Error"), error);
  });
}

}  // namespace
}  // namespace vistrel
