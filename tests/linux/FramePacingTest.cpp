#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "platform/linux/x11/FramePacing.h"

namespace vistrel::platform::linux_desktop {
namespace {

constexpr double interval = 1.0 / 30;

/// When frames are taken of a source that changes at these moments, each taken as soon as it may.
std::vector<double> framesOf(const std::vector<double>& changes) {
  std::vector<double> frames;
  double pace = 0;
  for (const double change : changes) {
    // A change that comes before the frame of an earlier one is due goes into that frame.
    if (!frames.empty() && change <= frames.back()) continue;
    const double frame = std::max(change, earliestNextFrame(pace, interval));
    pace = paceAfterFrame(pace, interval, frame);
    frames.push_back(frame);
  }
  return frames;
}

std::vector<double> changesEvery(double period, int count, double jitter = 0) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> shift(0, jitter);
  std::vector<double> changes;
  for (int i = 0; i < count; ++i) changes.push_back(100 + i * period + shift(random));
  return changes;
}

TEST(FramePacing, takesTheFirstChangeAtOnce) {
  EXPECT_EQ(framesOf({100.0}), std::vector<double>{100.0});
}

TEST(FramePacing, takesEachChangeOfASlowSourceAtOnce) {
  const auto changes = changesEvery(0.1, 50);
  EXPECT_EQ(framesOf(changes), changes);
}

TEST(FramePacing, neverDelaysASteadySourceOfTheSameRate) {
  const auto changes = changesEvery(interval, 300);
  EXPECT_EQ(framesOf(changes), changes);
}

TEST(FramePacing, keepsTheAverageWhateverTheSourceDoes) {
  for (const double period : {0.001, 1.0 / 144, 1.0 / 60, 0.02, 0.03, interval}) {
    const auto frames = framesOf(changesEvery(period, 3000, period));
    const double seconds = frames.back() - frames.front();
    EXPECT_LE(static_cast<double>(frames.size() - 1), seconds / interval + 1) << period;
  }
}

TEST(FramePacing, keepsUpWithAFastSource) {
  const auto frames = framesOf(changesEvery(0.001, 3000));
  const double seconds = frames.back() - frames.front();
  EXPECT_NEAR(static_cast<double>(frames.size()), seconds / interval, 2);
}

TEST(FramePacing, savesNothingUpWhileTheSourceRests) {
  const double now = 1000;
  const double pace = paceAfterFrame(1, interval, now);
  EXPECT_EQ(pace, now);
  EXPECT_GT(earliestNextFrame(pace, interval), now);
}

TEST(FramePacing, takesEveryChangeWithoutAnInterval) {
  EXPECT_EQ(earliestNextFrame(5, 0), 5);
  EXPECT_EQ(paceAfterFrame(5, 0, 6), 6);
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
