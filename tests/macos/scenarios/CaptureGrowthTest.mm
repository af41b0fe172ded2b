#include "tests/macos/scenarios/MirrorScenario.h"

namespace vistrel {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;

/// A capture of a source of 1000 × 500 points starts 2000 pixels wide on a screen of scale 2.
class CaptureGrowth : public MirrorScenario {
 protected:
  CaptureGrowth() { desktop().screens = {{{{0, 0}, {5000, 3000}}, {{0, 0}, {5000, 3000}}, 2}}; }

  void makePanelWide(double width) {
    fake::forgetMessages();
    drag(panel(), onGrip(panel()), {width - panel().frame.size.width, 0});
    drop();
  }
  static std::size_t captureWidth() { return stream().configuration.width; }
};

TEST_F(CaptureGrowth, FollowsAPanelThatIsMuchWider) {
  runWithMirror([&] {
    makePanelWide(1150);
    EXPECT_THAT(fake::messages(), Not(Contains(HasSubstr("updateConfiguration"))));
    makePanelWide(1151);
    EXPECT_TRUE(
        said({"SCStreamConfiguration#2 setWidth:2302", "SCStreamConfiguration#2 setHeight:1151",
              "SCStreamConfiguration#2 setMinimumFrameInterval:1/30",
              "SCStreamConfiguration#2 setQueueDepth:6", "SCStreamConfiguration#2 setShowsCursor:1",
              "SCStreamConfiguration#2 setScalesToFit:1",
              "SCStreamConfiguration#2 setPixelFormat:1111970369",
              "SCStream#1 updateConfiguration:SCStreamConfiguration#2 "
              "completionHandler:a block"}));
    EXPECT_EQ(captureWidth(), 2302U);
    EXPECT_EQ(stream().configuration.height, 1151U);
  });
}

TEST_F(CaptureGrowth, GrowsToTwiceTheSourceAndNeverShrinks) {
  runWithMirror([&] {
    makePanelWide(3000);
    EXPECT_EQ(captureWidth(), 4000U);
    EXPECT_EQ(stream().configuration.height, 2000U);
    for (const double width : {4000, 340}) {
      makePanelWide(width);
      EXPECT_THAT(fake::messages(), Not(Contains(HasSubstr("updateConfiguration")))) << width;
    }
    EXPECT_EQ(captureWidth(), 4000U);
    command(recapture);
    EXPECT_EQ(captureWidth(), 2000U);
  });
}

TEST_F(CaptureGrowth, WaitsForAPanelThatIsRolledUp) {
  runWithMirror([&] {
    makePanelWide(1000);
    command("Roll Up (Title Only)");
    fake::act(^{
      [panel() setFrame:{
        {32, 2942}, { 1500, 26 }
      }
                display:YES];
    });
    EXPECT_EQ(captureWidth(), 2000U);
    command("Roll Down (Show Mirror)");
    EXPECT_EQ(captureWidth(), 3000U);
  });
}

TEST_F(CaptureGrowth, LeavesAMirrorWithoutAStreamAlone) {
  desktop().outputError = "no output";
  runWithMirror([&] {
    makePanelWide(3000);
    EXPECT_THAT(fake::messages(), Not(Contains(HasSubstr("SCStream"))));
  });
}

}  // namespace
}  // namespace vistrel
