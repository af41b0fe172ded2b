#include <gtest/gtest.h>

#include "tests/core/CoreTest.h"

namespace vistrel {
namespace {

using enum StreamCall::Kind;

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
  EXPECT_EQ(inside(*mirror_).captureWidth(), 1151);
  EXPECT_EQ(inside(*mirror_).captureHeight(), 575);
  EXPECT_EQ(stream()->configuration(), configurationOf(1151, 575));
}

TEST_F(ResolutionGrowthTest, NeverShrinks) {
  widen(1300);
  widen(200);
  EXPECT_EQ(inside(*mirror_).captureWidth(), 1300);
  EXPECT_THAT(stream()->steps(), ElementsAre(addOutput, start, update));
}

TEST_F(ResolutionGrowthTest, StopsAtTwiceTheSource) {
  widen(9000);
  EXPECT_EQ(inside(*mirror_).captureWidth(), 2000);
  widen(9500);
  EXPECT_EQ(inside(*mirror_).captureWidth(), 2000);
  EXPECT_THAT(stream()->steps(), ElementsAre(addOutput, start, update));
}

TEST_F(ResolutionGrowthTest, IsUndoneByARecapture) {
  widen(1300);
  mirror_->stopCapture();
  mirror_->startCapture();
  desktop_.turnMainQueue();
  EXPECT_EQ(inside(*mirror_).captureWidth(), 1000);
}

TEST_F(ResolutionGrowthTest, DoesNothingWithoutAStream) {
  mirror_->stopCapture();
  widen(1300);
  EXPECT_EQ(inside(*mirror_).captureWidth(), 1000);
}

TEST_F(ResolutionGrowthTest, DoesNothingBeforeACaptureWasEverStarted) {
  makeMirror(openSource());
  widen(1300);
  EXPECT_EQ(inside(*mirror_).captureWidth(), 0);
}

TEST_F(ResolutionGrowthTest, WaitsWhileThePanelIsRolledUp) {
  mirror_->toggleRollUp();
  desktop_.turnMainQueue();
  widen(1300);
  EXPECT_EQ(inside(*mirror_).captureWidth(), 1000);
}

using FatalGrowthDeathTest = ResolutionGrowthTest;

TEST_F(FatalGrowthDeathTest, PanelOfAnImpossibleWidthEndsTheProgramSilently) {
  EXPECT_EXIT(mirror_->panel()->setFrame(rect(0, 0, 1e300, 200), Redisplay::atOnce),
              testing::KilledBySignal(SIGABRT), "^$");
}

}  // namespace
}  // namespace vistrel
