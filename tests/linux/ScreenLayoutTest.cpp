#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <random>

#include "platform/linux/ScreenLayout.h"

namespace vistrel::platform::linux_desktop {
namespace {

const Monitor plain{{0, 0, 1920, 1080}, 1};
const Monitor fine{{1920, 0, 3840, 2160}, 2};
const ScreenLayout mixed({plain, fine});

Rect pointsOf(const ScreenLayout& layout, std::size_t monitor) {
  return layout.monitors().at(monitor).points;
}

TEST(ScreenLayout, APixelIsAPointWhereNoMonitorIsKnown) {
  EXPECT_EQ(ScreenLayout().toPoints({-10, 20, 300, 200}), rect(-10, 20, 300, 200));
}

TEST(ScreenLayout, TheOriginIsThePrimaryMonitors) {
  const ScreenLayout layout({{{1920, 180, 1440, 900}, 1}, {{0, 0, 1920, 1080}, 1}});
  EXPECT_EQ(pointsOf(layout, 0), rect(0, 0, 1440, 900));
  EXPECT_EQ(pointsOf(layout, 1), rect(-1920, -180, 1920, 1080));
  EXPECT_EQ(layout.flipped(rect(32, 32, 340, 196)), rect(32, 672, 340, 196));
  EXPECT_EQ(layout.flipped(Point{-1920, -180}), (Point{-1920, 1080}));
}

TEST(ScreenLayout, MonitorsOfOneScaleStandAsTheirPixelsDo) {
  const ScreenLayout layout(
      {{{0, 0, 3000, 2000}, 1.5}, {{3000, 600, 1500, 900}, 1.5}, {{900, 2000, 600, 300}, 1.5}});
  EXPECT_EQ(pointsOf(layout, 1), rect(2000, 400, 1000, 600));
  EXPECT_EQ(pointsOf(layout, 2), rect(600, 2000 / 1.5, 400, 200));
}

TEST(ScreenLayout, NeighboursOfDifferentScalesTouch) {
  EXPECT_EQ(pointsOf(mixed, 1), rect(1920, 0, 1920, 1080));
  const ScreenLayout fineFirst({fine, plain});
  EXPECT_EQ(pointsOf(fineFirst, 1), rect(-1920, 0, 1920, 1080));
  const ScreenLayout below({{{0, 0, 2400, 1500}, 1.5}, {{0, 1500, 2400, 1000}, 1}});
  EXPECT_EQ(pointsOf(below, 1), rect(0, 1000, 2400, 1000));
}

TEST(ScreenLayout, AGapBetweenMonitorsStays) {
  const ScreenLayout layout({{{0, 0, 1000, 1000}, 2}, {{1200, 0, 1000, 1000}, 1}});
  EXPECT_EQ(pointsOf(layout, 1), rect(600, 0, 1000, 1000));
}

TEST(ScreenLayout, MonitorsThatShowTheSameHaveTheSamePlace) {
  const ScreenLayout layout({plain, plain});
  EXPECT_EQ(pointsOf(layout, 0), pointsOf(layout, 1));
}

struct WindowCase {
  const char* name;
  PixelRect pixels;
  Rect points;
};

class WindowOnMixedScales : public ::testing::TestWithParam<WindowCase> {};

TEST_P(WindowOnMixedScales, MeasuresWhatItDoesOnTheMonitorThatHoldsMostOfIt) {
  EXPECT_EQ(mixed.toPoints(GetParam().pixels), GetParam().points);
}

INSTANTIATE_TEST_SUITE_P(
    Windows, WindowOnMixedScales,
    ::testing::Values(
        WindowCase{"plain", {100, 50, 1000, 500}, rect(100, 50, 1000, 500)},
        WindowCase{"fine", {2000, 60, 1000, 500}, rect(1960, 30, 500, 250)},
        WindowCase{"odd", {2001, 61, 1001, 501}, rect(1960.5, 30.5, 500.5, 250.5)},
        WindowCase{"mostlyPlain", {1220, 0, 1000, 500}, rect(1220, 0, 1000, 500)},
        WindowCase{"mostlyFine", {1820, 0, 1000, 500}, rect(1870, 0, 500, 250)},
        WindowCase{"halfAndHalf", {1420, 0, 1000, 500}, rect(1420, 0, 1000, 500)},
        WindowCase{"mostOfWhatIsShown", {1900, -450, 1000, 500}, rect(1910, -225, 500, 250)},
        WindowCase{"offTheLeft", {-2000, 0, 1000, 500}, rect(-2000, 0, 1000, 500)},
        WindowCase{"offTheRight", {6000, 0, 1000, 500}, rect(3960, 0, 500, 250)},
        WindowCase{"belowThePlain", {100, 1300, 1000, 500}, rect(100, 1300, 1000, 500)},
        WindowCase{"small", {2000, 0, 160, 120}, rect(1960, 0, 80, 60)},
        WindowCase{"empty", {2000, 10, 0, 0}, rect(1960, 5, 0, 0)}),
    [](const auto& parameters) { return parameters.param.name; });

TEST(LaidOutMonitor, SizeDoesNotWobbleWhileAWindowMovesByFractions) {
  const auto& monitor = mixed.monitors().back();
  for (double x = 2000; x < 2002; x += 0.1) {
    const PixelRect pixels = monitor.toPixels(rect(x, x, 340.2, 196.3));
    EXPECT_EQ(pixels.width, 680);
    EXPECT_EQ(pixels.height, 393);
  }
}

/// Desktops as people build them: monitors that do not overlap, with or without gaps, of a few
/// scales.
class RandomDesktop {
 public:
  explicit RandomDesktop(unsigned seed) : random_(seed) {
    while (monitors_.size() < 4) {
      const Monitor next{
          {number(-3, 3) * 700, number(-3, 3) * 500, number(3, 20) * 100, number(3, 15) * 100},
          scales_.at(static_cast<std::size_t>(number(0, 4)))};
      if (std::none_of(monitors_.begin(), monitors_.end(), [&](const Monitor& each) {
            return overlap(each.pixels, next.pixels) > 0;
          })) {
        monitors_.push_back(next);
      }
    }
  }

  const std::vector<Monitor>& monitors() const { return monitors_; }
  PixelRect window() {
    return {number(-4000, 5000), number(-3000, 4000), number(1, 2000), number(1, 1500)};
  }

  static long overlap(const PixelRect& a, const PixelRect& b) {
    const long width = std::min(a.x + a.width, b.x + b.width) - std::max(a.x, b.x);
    const long height = std::min(a.y + a.height, b.y + b.height) - std::max(a.y, b.y);
    return std::max(width, 0L) * std::max(height, 0L);
  }

 private:
  int number(int least, int most) {
    return std::uniform_int_distribution<int>(least, most)(random_);
  }

  static constexpr std::array<double, 5> scales_{1, 1.25, 1.5, 2, 3};
  std::mt19937 random_;
  std::vector<Monitor> monitors_;
};

class RandomLayout : public ::testing::TestWithParam<unsigned> {
 protected:
  RandomDesktop desktop_{GetParam()};
  ScreenLayout layout_{desktop_.monitors()};
};

TEST_P(RandomLayout, MonitorsKeepTheirSizeAndDoNotOverlapInPoints) {
  const auto& monitors = layout_.monitors();
  for (std::size_t i = 0; i < monitors.size(); ++i) {
    const auto& [monitor, points] = monitors[i];
    EXPECT_EQ(monitor, desktop_.monitors()[i]);
    EXPECT_DOUBLE_EQ(points.width() * monitor.pixelsPerPoint, monitor.pixels.width);
    EXPECT_DOUBLE_EQ(points.height() * monitor.pixelsPerPoint, monitor.pixels.height);
    for (std::size_t j = 0; j < i; ++j) {
      const Rect common = intersection(points, monitors[j].points);
      EXPECT_LT(std::min(common.width(), common.height()), 1e-6) << i << " and " << j;
    }
  }
}

TEST_P(RandomLayout, AWindowHasTheScaleOfTheMonitorThatCountingFindsMostOfItOn) {
  for (int i = 0; i < 200; ++i) {
    const PixelRect window = desktop_.window();
    const auto& monitors = desktop_.monitors();
    const auto most =
        std::max_element(monitors.begin(), monitors.end(), [&](const Monitor& a, const Monitor& b) {
          return RandomDesktop::overlap(a.pixels, window) <
                 RandomDesktop::overlap(b.pixels, window);
        });
    if (RandomDesktop::overlap(most->pixels, window) == 0) continue;
    const Rect points = layout_.toPoints(window);
    EXPECT_DOUBLE_EQ(points.width(), window.width / most->pixelsPerPoint);
    EXPECT_DOUBLE_EQ(points.height(), window.height / most->pixelsPerPoint);
  }
}

TEST_P(RandomLayout, PixelsComeBackFromPointsAsTheyWere) {
  for (int i = 0; i < 200; ++i) {
    const PixelRect window = desktop_.window();
    for (const auto& monitor : layout_.monitors()) {
      EXPECT_EQ(monitor.toPixels(monitor.toPoints(window)), window);
    }
  }
}

TEST_P(RandomLayout, AWindowInsideAMonitorBelongsToItInPixelsAndInPoints) {
  for (const auto& monitor : layout_.monitors()) {
    const PixelRect inside{monitor.monitor.pixels.x + 90, monitor.monitor.pixels.y + 90, 120, 120};
    EXPECT_EQ(layout_.holding(inside), monitor);
    EXPECT_EQ(layout_.holding(monitor.toPoints(inside)), monitor);
    EXPECT_EQ(layout_.at({inside.x + 0.5, inside.y + 0.5}), monitor);
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomLayout, ::testing::Range(1U, 21U));

}  // namespace
}  // namespace vistrel::platform::linux_desktop
