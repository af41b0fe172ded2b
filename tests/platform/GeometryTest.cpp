#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "platform/Geometry.h"

namespace vistrel::platform {
namespace {

constexpr auto largestInt64 = std::numeric_limits<std::int64_t>::max();
constexpr auto smallestInt64 = std::numeric_limits<std::int64_t>::min();

TEST(Rect, TellsItsEdgesAndMiddle) {
  const Rect r = rect(10, 20, 30, 50);
  EXPECT_EQ(r.minX(), 10);
  EXPECT_EQ(r.maxX(), 40);
  EXPECT_EQ(r.midX(), 25);
  EXPECT_EQ(r.minY(), 20);
  EXPECT_EQ(r.maxY(), 70);
  EXPECT_EQ(r.midY(), 45);
}

TEST(Rect, ContainsItsMinimumEdgesAndNotItsMaximumEdges) {
  const Rect r = rect(10, 20, 30, 50);
  EXPECT_TRUE(r.contains({10, 20}));
  EXPECT_TRUE(r.contains({39.9, 69.9}));
  EXPECT_FALSE(r.contains({40, 30}));
  EXPECT_FALSE(r.contains({20, 70}));
  EXPECT_FALSE(r.contains({9.9, 30}));
}

TEST(Intersection, IsThePartThatBothShare) {
  EXPECT_EQ(intersection(rect(0, 0, 10, 10), rect(5, -5, 10, 10)), rect(5, 0, 5, 5));
}

TEST(Intersection, HasNoSizeWhenNothingIsShared) {
  EXPECT_EQ(intersection(rect(0, 0, 10, 10), rect(20, 0, 10, 10)).width(), 0);
  EXPECT_EQ(intersection(rect(0, 0, 10, 10), rect(10, 0, 10, 10)).width(), 0);
}

TEST(TruncatedToInt64, CutsTowardZero) {
  EXPECT_EQ(truncatedToInt64(2.9), 2);
  EXPECT_EQ(truncatedToInt64(-2.9), -2);
  EXPECT_EQ(truncatedToInt64(-0.5), 0);
}

TEST(TruncatedToInt64, TakesTheWholeRangeOfTheInteger) {
  EXPECT_EQ(truncatedToInt64(-0x1p63), smallestInt64);
  EXPECT_EQ(truncatedToInt64(std::nextafter(0x1p63, 0)), largestInt64 - 1023);
}

/// The program ends abnormally, with nothing on standard error.
#define EXPECT_SILENT_ABORT(statement) \
  EXPECT_EXIT(static_cast<void>(statement), testing::KilledBySignal(SIGABRT), "^$")

TEST(TruncatedToInt64DeathTest, EndsTheProgramSilentlyOnWhatDoesNotFit) {
  EXPECT_SILENT_ABORT(truncatedToInt64(0x1p63));
  EXPECT_SILENT_ABORT(truncatedToInt64(std::nextafter(-0x1p63, -HUGE_VAL)));
  EXPECT_SILENT_ABORT(truncatedToInt64(HUGE_VAL));
  EXPECT_SILENT_ABORT(truncatedToInt64(-HUGE_VAL));
}

TEST(TruncatedToInt64DeathTest, EndsTheProgramSilentlyOnWhatIsNoNumber) {
  EXPECT_SILENT_ABORT(truncatedToInt64(std::nan("")));
}

TEST(FittingInt32, TakesTheWholeRangeOfTheInteger) {
  EXPECT_EQ(fittingInt32(-2147483648), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(fittingInt32(2147483647), std::numeric_limits<std::int32_t>::max());
}

TEST(FittingInt32DeathTest, EndsTheProgramSilentlyOnWhatDoesNotFit) {
  EXPECT_SILENT_ABORT(fittingInt32(2147483648));
  EXPECT_SILENT_ABORT(fittingInt32(-2147483649));
}

TEST(MultipliedExactly, Multiplies) {
  EXPECT_EQ(multipliedExactly(-3, 7), -21);
  EXPECT_EQ(multipliedExactly(largestInt64, 1), largestInt64);
}

TEST(MultipliedExactlyDeathTest, EndsTheProgramSilentlyOnOverflow) {
  EXPECT_SILENT_ABORT(multipliedExactly(largestInt64, 2));
  EXPECT_SILENT_ABORT(multipliedExactly(smallestInt64, -1));
}

}  // namespace
}  // namespace vistrel::platform
