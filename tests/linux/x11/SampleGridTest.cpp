#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>

#include "platform/linux/x11/picture/SampleGrid.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// The pixel that the nearest filter picks for a sample: transforms carry 16 fractional bits, and
/// the place of a pixel is its centre.
int picked(int sample, double scale, double origin) {
  const auto fixedScale = std::llround(scale * 65536);
  const auto fixedOrigin = std::llround(origin * 65536);
  const auto place = (fixedScale * (2 * sample + 1)) / 2 + fixedOrigin;
  return static_cast<int>(std::floor((static_cast<double>(place) - 1) / 65536));
}

TEST(SampleGrid, picksTheVeryPixelsOfTheDefinition) {
  for (const int samples : {2, 3, 24, 31}) {
    for (int length = 1; length < 4500; length += length < 100 ? 1 : 37) {
      const auto sampling = samplingOfGrid({5, 7, length, length}, samples, samples);
      for (int i = 0; i < samples; ++i) {
        const int expected = static_cast<int>(std::int64_t{i} * (length - 1) / (samples - 1));
        ASSERT_EQ(picked(i, sampling.scaleX, sampling.originX), 5 + expected) << length << " " << i;
        ASSERT_EQ(picked(i, sampling.scaleY, sampling.originY), 7 + expected) << length << " " << i;
      }
    }
  }
}

TEST(SampleGrid, hasRowsAndColumnsOfTheirOwn) {
  const auto sampling = samplingOfGrid({0, 0, 101, 51}, 6, 11);
  EXPECT_DOUBLE_EQ(sampling.scaleX, 10);
  EXPECT_DOUBLE_EQ(sampling.scaleY, 10);
  EXPECT_EQ(sampling.filter, Filter::nearest);
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
