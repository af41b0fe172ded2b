#include <gtest/gtest.h>
#include <random>

#include "mirror/BlankTest.h"
#include "platform/simulated/SimulatedFrames.h"

namespace vistrel {
namespace {

using platform::HostPixelBuffer;
using platform::PixelBGRA;
using namespace platform::simulated;

constexpr platform::PixelFormat otherFormat = 0x34323076;  // "420v"

PixelBGRA gray(int level) {
  const auto byte = static_cast<std::uint8_t>(level);
  return {byte, byte, byte, 255};
}

TEST(BlankTest, AllBlackFrameIsBlank) { EXPECT_TRUE(isMostlyBlank(*blackPixels(100, 80))); }

TEST(BlankTest, ChannelsOfTwelveAreBlankWhateverTheAlpha) {
  EXPECT_TRUE(isMostlyBlank(*solidPixels(100, 80, {12, 12, 12, 255})));
  EXPECT_TRUE(isMostlyBlank(*solidPixels(100, 80, {0, 0, 0, 0})));
}

TEST(BlankTest, AnyChannelOfThirteenIsNotBlank) {
  EXPECT_FALSE(isMostlyBlank(*solidPixels(100, 80, {13, 0, 0, 255})));
  EXPECT_FALSE(isMostlyBlank(*solidPixels(100, 80, {0, 13, 0, 255})));
  EXPECT_FALSE(isMostlyBlank(*solidPixels(100, 80, {0, 0, 13, 255})));
}

TEST(BlankTest, OneSampledPixelWithRedThirteenIsNotBlank) {
  const PixelBGRA barelyRed{.blue = 0, .green = 0, .red = 13, .alpha = 255};
  EXPECT_FALSE(isMostlyBlank(*blackPixelsBut(100, 80, 0, 0, barelyRed)));
  EXPECT_FALSE(isMostlyBlank(*blackPixelsBut(100, 80, 99, 79, barelyRed)));
}

TEST(BlankTest, BrightPixelBetweenGridPointsDoesNotCount) {
  // Columns 0, 4, 8, 12, 17… of 100 are sampled.
  EXPECT_TRUE(isMostlyBlank(*blackPixelsBut(100, 80, 1, 0, gray(255))));
  EXPECT_FALSE(isMostlyBlank(*blackPixelsBut(100, 80, 4, 0, gray(255))));
}

TEST(BlankTest, FrameLessThanTwoPixelsWideOrHighIsNotBlank) {
  EXPECT_FALSE(isMostlyBlank(*blackPixels(1, 80)));
  EXPECT_FALSE(isMostlyBlank(*blackPixels(100, 1)));
  EXPECT_TRUE(isMostlyBlank(*blackPixels(2, 2)));
}

TEST(BlankTest, FrameInAnotherPixelFormatIsNotBlank) {
  EXPECT_FALSE(isMostlyBlank(*solidPixels(100, 80, gray(0), otherFormat)));
}

TEST(BlankTest, FrameWhoseMemoryCannotBeReachedIsNotBlank) {
  EXPECT_FALSE(isMostlyBlank(*unreachablePixels(100, 80)));
}

TEST(BlankTestDeathTest, SamplePositionThatOverflowsEndsTheProgramSilently) {
  constexpr auto huge = std::numeric_limits<std::int64_t>::max();
  const HostPixelBuffer tall(platform::pixelFormat32BGRA, 2, huge, 0,
                             std::vector<std::uint8_t>(16));
  EXPECT_EXIT(isMostlyBlank(tall), testing::KilledBySignal(SIGABRT), "^$");
}

/// The rule in plain loops over the bytes.
bool naivelyBlank(const HostPixelBuffer& frame) {
  if (frame.width() < 2 || frame.height() < 2) return false;
  for (std::int64_t i = 0; i < 24; ++i) {
    for (std::int64_t j = 0; j < 24; ++j) {
      const std::int64_t y = i * (frame.height() - 1) / 23;
      const std::int64_t x = j * (frame.width() - 1) / 23;
      const auto at = static_cast<std::size_t>(y * frame.bytesPerRow() + x * 4);
      for (std::size_t channel = 0; channel < 3; ++channel) {
        if (frame.bytes()[at + channel] > 12) return false;
      }
    }
  }
  return true;
}

TEST(BlankTest, AgreesWithPlainLoopsOverRandomNearlyBlackFrames) {
  std::mt19937 random(7);
  std::uniform_int_distribution<std::int64_t> side(1, 120);
  int blank = 0;
  for (int round = 0; round < 500; ++round) {
    const auto width = side(random);
    const auto height = side(random);
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(width * height * 4));
    for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random() % 13);
    if (round % 2 == 0) bytes[random() % bytes.size()] = 13;
    const HostPixelBuffer frame(platform::pixelFormat32BGRA, width, height, width * 4,
                                std::move(bytes));
    EXPECT_EQ(isMostlyBlank(frame), naivelyBlank(frame)) << width << " x " << height;
    blank += isMostlyBlank(frame) ? 1 : 0;
  }
  EXPECT_GT(blank, 100);
  EXPECT_LT(blank, 500);
}

}  // namespace
}  // namespace vistrel
