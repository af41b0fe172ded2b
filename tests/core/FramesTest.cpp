#include <gtest/gtest.h>

#include "mirror/LiveDotColors.h"
#include "tests/core/CoreTest.h"

namespace vistrel {
namespace {

class FramesTest : public MirrorTest {
 protected:
  FramesTest() { showMirror(); }

  /// Whether a frame replaces the picture that is shown.
  bool isShown(Frame frame) {
    const auto before = shownImage();
    deliver(std::move(frame));
    EXPECT_EQ(shownImage(), inside(*mirror_).lastImage());
    return shownImage() != before;
  }
};

TEST_F(FramesTest, BecomeThePicture) {
  EXPECT_TRUE(isShown({.image = brightPixels()}));
  EXPECT_EQ(inside(*mirror_).lastFrameAt(), platform::now());
  EXPECT_EQ(dot(), liveColor);
}

TEST_F(FramesTest, AreHandledOnTheSampleQueueAndShownOnMain) {
  stream()->deliver({.image = brightPixels()});
  desktop_.virtualTime().turnOtherQueues();
  EXPECT_EQ(shownImage(), nullptr);
  EXPECT_EQ(inside(*mirror_).lastImage(), nullptr);
  desktop_.turnMainQueue();
  EXPECT_NE(shownImage(), nullptr);
}

TEST_F(FramesTest, AreDroppedWhenInvalid) {
  EXPECT_FALSE(isShown({.image = brightPixels(), .valid = false}));
}

TEST_F(FramesTest, AreDroppedUnlessComplete) {
  for (const std::int64_t status : {1, 2, 3, 4, 5, 77}) {
    EXPECT_FALSE(isShown({.image = brightPixels(), .status = status})) << status;
  }
  EXPECT_TRUE(isShown({.image = brightPixels(), .status = 0}));
}

TEST_F(FramesTest, AreShownWithoutAStatus) {
  EXPECT_TRUE(isShown({.image = brightPixels(), .status = std::nullopt}));
}

TEST_F(FramesTest, AreDroppedWithoutAnImageBuffer) { EXPECT_FALSE(isShown({.image = nullptr})); }

TEST_F(FramesTest, AreDroppedWhenNoImageCanBeMade) {
  deliverPicture();
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

TEST_F(FramesTest, AreDroppedWhenBlackAlsoAfterABlackPicture) {
  EXPECT_TRUE(isShown({.image = blackPixels(40, 20)}));
  EXPECT_FALSE(isShown({.image = blackPixels(40, 20)}));
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
  const auto time = inside(*mirror_).lastFrameAt();
  mirror_->showStatus("text");
  desktop_.advance(0.5);
  deliver({.image = blackPixels(40, 20)});
  deliver({.image = nullptr});
  EXPECT_EQ(inside(*mirror_).lastFrameAt(), time);
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

}  // namespace
}  // namespace vistrel
