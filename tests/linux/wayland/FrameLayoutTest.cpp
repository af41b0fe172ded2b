#include <cstdint>
#include <gtest/gtest.h>
#include <limits>

#include "platform/linux/wayland/stream/FrameLayout.h"

namespace vistrel::platform::linux_desktop {
namespace {

constexpr int most = std::numeric_limits<int>::max();
constexpr int least = std::numeric_limits<int>::min();

/// 100 × 50 in rows of 512 bytes, which begin after 4096 others and fill the memory.
ClaimedFrame plausible() {
  return {.size = {100, 50},
          .readable = 4096 + 50 * 512,
          .offset = 4096,
          .bytes = 50 * 512,
          .stride = 512,
          .crop = std::nullopt};
}

ClaimedFrame ofSize(PixelSize size) {
  const auto stride = std::int64_t{size.width} * 4;
  const auto bytes = static_cast<std::uint64_t>(stride) * static_cast<std::uint64_t>(size.height);
  return {.size = size, .readable = bytes, .offset = 0, .bytes = bytes, .stride = stride};
}

TEST(FrameLayout, IsWhatIsClaimedWhereThatLiesInTheMemory) {
  const FrameLayout expected{4096, 512, {100, 50}, {0, 0, 100, 50}};
  EXPECT_EQ(layoutOf(plausible()), expected);
}

TEST(FrameLayout, KeepsToACropInsideTheFrame) {
  auto claimed = plausible();
  claimed.crop = PixelRect{10, 20, 90, 30};
  const auto layout = layoutOf(claimed);
  ASSERT_TRUE(layout);
  EXPECT_EQ(layout->crop, (PixelRect{10, 20, 90, 30}));
}

TEST(FrameLayout, IsNoneWhereTheOffsetLeadsOutOfTheMemory) {
  auto claimed = plausible();
  claimed.offset = 4100;
  EXPECT_FALSE(layoutOf(claimed));
  claimed.offset = std::numeric_limits<std::uint64_t>::max() - 3;
  EXPECT_FALSE(layoutOf(claimed));
}

TEST(FrameLayout, IsNoneWhereTheRowsLeadOutOfTheMemory) {
  auto claimed = plausible();
  claimed.readable -= 1;
  EXPECT_FALSE(layoutOf(claimed));
  claimed = plausible();
  claimed.size.height = 51;
  EXPECT_FALSE(layoutOf(claimed));
  claimed = plausible();
  claimed.readable = 0;
  EXPECT_FALSE(layoutOf(claimed));
}

TEST(FrameLayout, IsNoneWhereFewerBytesAreThereThanRowsTake) {
  auto claimed = plausible();
  claimed.bytes -= 1;
  EXPECT_FALSE(layoutOf(claimed));
}

TEST(FrameLayout, IsNoneForStridesThatAreNoRows) {
  for (const std::int64_t stride :
       {std::int64_t{0}, std::int64_t{-512}, std::int64_t{396}, std::int64_t{510},
        std::int64_t{0x40000}, std::int64_t{most}, std::int64_t{least}}) {
    auto claimed = plausible();
    claimed.stride = stride;
    claimed.readable = claimed.bytes = std::numeric_limits<std::uint64_t>::max();
    EXPECT_FALSE(layoutOf(claimed)) << stride;
  }
}

TEST(FrameLayout, IsNoneForPicturesOfNoSizeOrAnOutrageousOne) {
  for (const PixelSize size :
       {PixelSize{0, 0}, PixelSize{0, 50}, PixelSize{100, 0}, PixelSize{-1, 50},
        PixelSize{30000, 30000}, PixelSize{16385, 1}, PixelSize{1, 16385}, PixelSize{most, most}}) {
    auto claimed = ofSize({1, 1});
    claimed.size = size;
    claimed.stride = 0x3fffc;
    claimed.readable = claimed.bytes = std::numeric_limits<std::uint64_t>::max();
    EXPECT_FALSE(layoutOf(claimed)) << size.width << " x " << size.height;
  }
  EXPECT_TRUE(layoutOf(ofSize({1, 1})));
  EXPECT_TRUE(layoutOf(ofSize({16380, 16384})));
}

TEST(FrameLayout, IsNoneForACropThatIsNotInTheFrame) {
  for (const PixelRect& crop :
       {PixelRect{0, 0, 101, 50}, PixelRect{1, 0, 100, 50}, PixelRect{0, 1, 100, 50},
        PixelRect{-1, 0, 10, 10}, PixelRect{0, -1, 10, 10}, PixelRect{10, 10, 0, 10},
        PixelRect{10, 10, 10, -5}, PixelRect{most, most, most, most},
        PixelRect{least, least, most, most}, PixelRect{most, 0, 1, 1}}) {
    auto claimed = plausible();
    claimed.crop = crop;
    EXPECT_FALSE(layoutOf(claimed)) << crop.x << " " << crop.width;
  }
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
