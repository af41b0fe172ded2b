#include <gtest/gtest.h>

#include "mirror/LiveDotColors.h"
#include "tests/core/CoreTest.h"

namespace vistrel {
namespace {

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

TEST_F(FreshnessDotTest, IsNamedForThoseWhoCannotSeeItsColour) {
  deliverPicture();
  EXPECT_EQ(partsOf(*mirror_).liveDot->accessibilityLabel(), "Live");
  desktop_.advance(5);
  EXPECT_EQ(partsOf(*mirror_).liveDot->accessibilityLabel(), "Not updating");
  mirror_->showStatus("Something went wrong.");
  EXPECT_EQ(partsOf(*mirror_).liveDot->accessibilityLabel(), "Error");
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

}  // namespace
}  // namespace vistrel
