#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <numeric>
#include <random>
#include <vector>

#include "platform/linux/x11/source/FramePacing.h"

namespace vistrel::platform::linux_desktop {
namespace {

constexpr double interval = 1.0 / 30;
constexpr double millisecond = 0.001;

using Times = std::vector<double>;

struct Frame {
  double time;
  /// The newest change that it shows, by its number.
  std::size_t change;
  /// How old what it shows is when it is taken.
  double age;
};

/// A source with such changes and the stream that it is captured by. The display server tells of
/// the first change after it has been asked; frames show all changes before them.
class CapturedSource {
 public:
  CapturedSource(Times changes, double frameInterval)
      : changes_(std::move(changes)), pacing_(frameInterval) {}

  std::vector<Frame> frames() {
    while (hasNews_ || firstUnheard() < changes_.size()) {
      const double due = std::max(pacing_.due(), asked_);
      const auto next = firstUnheard();
      const bool hears = listens_ && next < changes_.size();
      if (hasNews_ && (!hears || due <= changes_[next])) {
        take(due);
      } else {
        hear(changes_[next]);
      }
    }
    return frames_;
  }

 private:
  std::size_t firstUnheard() const {
    return static_cast<std::size_t>(std::upper_bound(changes_.begin(), changes_.end(), asked_) -
                                    changes_.begin());
  }

  void hear(double now) {
    hasNews_ = true;
    listens_ = false;
    pacing_.changeNoticed(now);
    if (now >= pacing_.due()) return take(now);
    if (!pacing_.wantsNextChange()) return;
    ask(now);
    pacing_.listening();
  }

  void take(double now) {
    ask(now);
    hasNews_ = false;
    const auto newest = firstUnheard() - 1;
    frames_.push_back({now, newest, now - changes_[newest]});
    pacing_.frameTaken(now);
  }

  void ask(double now) {
    listens_ = true;
    asked_ = now;
  }

  const Times changes_;
  FramePacing pacing_;
  std::vector<Frame> frames_;
  double asked_ = 0;
  bool listens_ = true;
  bool hasNews_ = false;
};

std::vector<Frame> framesOf(const Times& changes, double frameInterval = interval) {
  return CapturedSource(changes, frameInterval).frames();
}

Times timesOf(const std::vector<Frame>& frames) {
  Times times;
  for (const Frame& each : frames) times.push_back(each.time);
  return times;
}

/// As a source draws that aims at fixed moments and meets each with a delay of its own.
Times changesEvery(double period, int count, double jitter = 0, unsigned seed = 7) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> delay(0, jitter);
  const double phase = std::uniform_real_distribution<double>(0, period)(random);
  Times changes;
  for (int i = 0; i < count; ++i) changes.push_back(100 + phase + i * period + delay(random));
  std::ranges::sort(changes);
  return changes;
}

/// The most frames of any second, by looking at each second that begins with a frame.
std::ptrdiff_t mostInAnySecond(const std::vector<Frame>& frames) {
  constexpr double second = 1 - 1e-9;
  std::ptrdiff_t most = 0;
  for (auto first = frames.begin(); first != frames.end(); ++first) {
    const auto end = std::find_if(
        first, frames.end(), [&](const Frame& each) { return each.time >= first->time + second; });
    most = std::max(most, end - first);
  }
  return most;
}

/// What holds whatever the source does.
void expectSound(const std::vector<Frame>& frames, const Times& changes) {
  EXPECT_LE(mostInAnySecond(frames), 30);
  ASSERT_FALSE(frames.empty());
  EXPECT_EQ(frames.back().change, changes.size() - 1) << "the last change is not shown";
  for (std::size_t i = 1; i < frames.size(); ++i) {
    ASSERT_GT(frames[i].change, frames[i - 1].change) << "a frame without news";
    // The change that came first after the last frame waits until it may be shown, which is a bit
    // over an interval after that frame at most, and perhaps for the next change.
    const double came = changes[frames[i - 1].change + 1];
    const double mayBeShown = std::max(came, frames[i - 1].time + interval * 9 / 8);
    ASSERT_LE(frames[i].time, mayBeShown + interval * 3 / 2) << "frame " << i;
  }
}

TEST(FramePacing, TakesTheFirstChangeAtOnce) {
  EXPECT_EQ(timesOf(framesOf({100.0})), Times{100.0});
}

TEST(FramePacing, TakesEachChangeOfASlowSourceAtOnce) {
  const auto changes = changesEvery(0.1, 50, 50 * millisecond);
  EXPECT_EQ(timesOf(framesOf(changes)), changes);
}

TEST(FramePacing, NeverDelaysASteadySourceThatIsNotFaster) {
  for (const double rate : {24.0, 25.0, 29.97, 30.0 - 1e-6}) {
    for (unsigned seed = 0; seed < 20; ++seed) {
      const auto changes = changesEvery(1 / rate, 300, 0, seed);
      EXPECT_EQ(timesOf(framesOf(changes)), changes) << rate;
    }
  }
}

TEST(FramePacing, DelaysAJitteringSourceOfTheSameRateByNoMoreThanItsJitter) {
  for (const double rate : {24.0, 25.0, 29.97, 30.0}) {
    for (const double jitter : {0.5, 2.0, 4.0, 8.0}) {
      const auto changes = changesEvery(1 / rate, 3000, jitter * millisecond);
      const auto frames = framesOf(changes);
      EXPECT_EQ(frames.size(), changes.size()) << rate << " Hz, jitter " << jitter;
      for (const Frame& each : frames) ASSERT_LE(each.age, (jitter + 0.001) * millisecond) << rate;
      expectSound(frames, changes);
    }
  }
}

/// The share of frames after the first second that satisfy something.
double shareOf(const std::vector<Frame>& frames,
               const std::function<bool(const Frame& former, const Frame& frame)>& condition) {
  double all = 0;
  double good = 0;
  for (std::size_t i = 31; i < frames.size(); ++i, ++all) {
    if (condition(frames[i - 1], frames[i])) ++good;
  }
  return good / all;
}

TEST(FramePacing, TakesASourceOfTwiceTheRateAtEverySecondChange) {
  for (const double rate : {59.94, 60.0}) {
    for (const double jitter : {0.0, 1.0, 2.0, 3.0}) {
      for (unsigned seed = 0; seed < 20; ++seed) {
        const auto changes = changesEvery(1 / rate, 1200, jitter * millisecond, seed);
        const auto frames = framesOf(changes);
        expectSound(frames, changes);
        const auto inTime = [&](const Frame&, const Frame& frame) {
          return frame.age <= (jitter + 0.001) * millisecond;
        };
        const auto everySecond = [](const Frame& former, const Frame& frame) {
          return frame.change - former.change == 2;
        };
        EXPECT_GE(shareOf(frames, inTime), 0.99) << rate << " Hz, jitter " << jitter;
        EXPECT_GE(shareOf(frames, everySecond), 0.99) << rate << " Hz, jitter " << jitter;
      }
    }
  }
}

TEST(FramePacing, GivesUpAFrameOnceInAWhileWhereASourceIsHardlyFaster) {
  // Clocks that differ by a ten-thousandth, by a thousandth.
  for (const double rate : {30.003, 30.03, 60.006, 60.06}) {
    const auto changes = changesEvery(1 / rate, 20000);
    const auto frames = framesOf(changes);
    expectSound(frames, changes);
    const double skipped = rate > 45 ? 2 : 1;
    const auto regular = [&](const Frame& former, const Frame& frame) {
      return static_cast<double>(frame.change - former.change) == skipped;
    };
    EXPECT_GE(shareOf(frames, regular), 0.99) << rate;
    const auto fresh = [&](const Frame&, const Frame& frame) { return frame.age < 0.4 / rate; };
    EXPECT_EQ(shareOf(frames, fresh), 1) << rate;
  }
}

TEST(FramePacing, ShowsFreshPicturesOfFastSources) {
  for (const double rate : {37.5, 40.0, 48.0, 50.0, 72.0, 75.0, 90.0, 120.0, 144.0, 1000.0}) {
    const auto changes = changesEvery(1 / rate, static_cast<int>(20 * rate));
    const auto frames = framesOf(changes);
    expectSound(frames, changes);
    // Old is what has been waited with for most of the time to the next change.
    const auto fresh = [&](const Frame&, const Frame& frame) { return frame.age < 0.55 / rate; };
    EXPECT_GE(shareOf(frames, fresh), rate < 100 ? 0.95 : 0) << rate;
    EXPECT_GE(static_cast<double>(frames.size()), 20 * 22) << rate;
  }
}

TEST(FramePacing, ASourceThatFallsSilentShowsItsLastChangeSoon) {
  for (int count = 2; count < 100; ++count) {
    const auto changes = changesEvery(1.0 / 60, count);
    const auto frames = framesOf(changes);
    EXPECT_EQ(frames.back().change, changes.size() - 1);
    EXPECT_LE(frames.back().age, interval) << count;
  }
}

TEST(FramePacing, HoldsForRandomAndHostileChanges) {
  std::mt19937 random(3);
  const auto upTo = [&](double most) {
    return std::uniform_real_distribution<double>(0, most)(random);
  };
  for (int round = 0; round < 300; ++round) {
    Times changes;
    double now = 100;
    while (changes.size() < 400) {
      // A burst, a pause of about an interval, of just under a second, a steady stretch.
      const double pause = std::vector{upTo(2), upTo(40), 960 + upTo(45), 1000.0 / 30,
                                       1000.0 / 60}[static_cast<std::size_t>(upTo(5))];
      const int count = 1 + static_cast<int>(upTo(60));
      const double step = round % 2 == 0 ? upTo(40) : pause;
      now += pause * millisecond;
      for (int i = 0; i < count; ++i) changes.push_back(now += (step + 1e-6) * millisecond);
    }
    expectSound(framesOf(changes), changes);
  }
}

TEST(FramePacing, KeepsUpWithAFastSource) {
  const auto frames = framesOf(changesEvery(millisecond, 5000));
  EXPECT_GE(frames.size(), 149u);
  EXPECT_LE(frames.size(), 151u);
}

TEST(FramePacing, HoldsForOtherIntervals) {
  for (const double rate : {0.5, 1.0, 7.0, 15.0, 29.97, 60.0, 144.0}) {
    for (const double period : {0.001, 1 / rate, 0.5 / rate, 0.7 / rate}) {
      const auto frames =
          framesOf(changesEvery(period, static_cast<int>(20 / rate / period)), 1 / rate);
      const auto most = static_cast<std::size_t>(std::ceil(rate));
      for (std::size_t i = most; i < frames.size(); ++i) {
        ASSERT_GE(frames[i].time - frames[i - most].time, static_cast<double>(most) / rate - 1e-9)
            << rate << " a second of changes each " << period;
      }
      EXPECT_GE(frames.size(), 9u) << rate << " a second of changes each " << period;
    }
  }
}

TEST(FramePacing, FollowsAChangeOfItsInterval) {
  FramePacing pacing(interval);
  pacing.frameTaken(100);
  pacing.setInterval(1);
  EXPECT_NEAR(pacing.earliest(), 101, 1e-9);
  pacing.setInterval(0);
  EXPECT_EQ(pacing.earliest(), 100);
}

TEST(FramePacing, TakesEveryChangeWithoutAnInterval) {
  const auto changes = changesEvery(millisecond, 1000);
  EXPECT_EQ(timesOf(framesOf(changes, 0)), changes);
}

TEST(FramePacing, SavesNothingUpWhileTheSourceRests) {
  FramePacing pacing(interval);
  pacing.frameTaken(1);
  pacing.frameTaken(1000);
  EXPECT_GT(pacing.earliest(), 1000);
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
