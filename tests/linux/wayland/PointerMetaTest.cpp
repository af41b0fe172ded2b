#include <array>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <spa/buffer/meta.h>
#include <spa/param/video/raw.h>
#include <vector>

#include "platform/linux/wayland/stream/PointerMeta.h"

namespace vistrel::platform::linux_desktop {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::array<std::uint8_t, 16> fourPixels{1, 2,  3,  4,  5,  6,  7,  8,
                                                  9, 10, 11, 12, 13, 14, 15, 16};

/// What a compositor writes: the pointer at 30, 40 with a picture of 2 × 2, its hot spot at 1, 0.
struct Meta {
  spa_meta_cursor cursor{
      .id = 1, .position = {30, 40}, .hotspot = {1, 0}, .bitmap_offset = sizeof(spa_meta_cursor)};
  spa_meta_bitmap bitmap{.format = SPA_VIDEO_FORMAT_RGBA,
                         .size = {2, 2},
                         .stride = 8,
                         .offset = sizeof(spa_meta_bitmap)};
  std::vector<std::uint8_t> pixels{fourPixels.begin(), fourPixels.end()};

  PointerNews read() const {
    // Exactly as much as there is, so that a sanitizer sees what lies beyond.
    std::vector<std::uint8_t> bytes(sizeof cursor + sizeof bitmap + pixels.size());
    std::memcpy(bytes.data(), &cursor, sizeof cursor);
    std::memcpy(bytes.data() + sizeof cursor, &bitmap, sizeof bitmap);
    std::memcpy(bytes.data() + sizeof cursor + sizeof bitmap, pixels.data(), pixels.size());
    return readPointerMeta(bytes);
  }
};

TEST(PointerMeta, TellsPlaceAndPicture) {
  const auto news = Meta().read();
  EXPECT_EQ(news.place, (PointerNews::Place{30, 40}));
  ASSERT_TRUE(news.image);
  EXPECT_EQ(news.image->area, (PixelRect{-1, 0, 2, 2}));
  EXPECT_THAT(news.image->pixels, ElementsAre(0x04010203, 0x08050607, 0x0c090a0b, 0x100d0e0f));
}

TEST(PointerMeta, TakesBlueFirstToo) {
  Meta meta;
  meta.bitmap.format = SPA_VIDEO_FORMAT_BGRA;
  const auto news = meta.read();
  ASSERT_TRUE(news.image);
  EXPECT_EQ(news.image->pixels.front(), 0x04030201u);
}

TEST(PointerMeta, IsOfNoPointerWithoutAnId) {
  Meta meta;
  meta.cursor.id = 0;
  const auto news = meta.read();
  EXPECT_FALSE(news.place);
  EXPECT_FALSE(news.image);
}

TEST(PointerMeta, KeepsThePictureWhereItBringsNone) {
  Meta meta;
  meta.cursor.bitmap_offset = 0;
  const auto news = meta.read();
  EXPECT_TRUE(news.place);
  EXPECT_FALSE(news.image);
}

TEST(PointerMeta, HidesThePointerWithAPictureWithoutPixels) {
  Meta meta;
  meta.bitmap.offset = 0;
  const auto news = meta.read();
  ASSERT_TRUE(news.image);
  EXPECT_THAT(news.image->pixels, IsEmpty());
}

TEST(PointerMeta, LeavesOutAPictureThatLeadsOutOfIt) {
  const auto spoilt = [](auto spoil) {
    Meta meta;
    spoil(meta);
    return !meta.read().image.has_value();
  };
  EXPECT_TRUE(spoilt([](Meta& meta) { meta.pixels.pop_back(); }));
  EXPECT_TRUE(spoilt([](Meta& meta) { meta.cursor.bitmap_offset = 0xffffffff; }));
  EXPECT_TRUE(spoilt([](Meta& meta) { meta.cursor.bitmap_offset += 20; }));
  EXPECT_TRUE(spoilt([](Meta& meta) { meta.cursor.bitmap_offset = 1; }));
  EXPECT_TRUE(spoilt([](Meta& meta) { meta.bitmap.offset = 0xffffffff; }));
  EXPECT_TRUE(spoilt([](Meta& meta) { meta.bitmap.offset += 1; }));
  EXPECT_TRUE(spoilt([](Meta& meta) { meta.bitmap.stride = 12; }));
  EXPECT_TRUE(spoilt([](Meta& meta) { meta.bitmap.stride = 4; }));
  EXPECT_TRUE(spoilt([](Meta& meta) { meta.bitmap.stride = -8; }));
  EXPECT_TRUE(spoilt([](Meta& meta) { meta.bitmap.stride = 0x7fffffff; }));
  EXPECT_TRUE(spoilt([](Meta& meta) { meta.bitmap.size.height = 3; }));
  EXPECT_TRUE(spoilt([](Meta& meta) { meta.bitmap.size = {30000, 30000}; }));
  EXPECT_TRUE(spoilt([](Meta& meta) { meta.bitmap.size = {0xffffffff, 0xffffffff}; }));
  EXPECT_TRUE(spoilt([](Meta& meta) { meta.bitmap.format = SPA_VIDEO_FORMAT_YV12; }));
  EXPECT_TRUE(spoilt([](Meta& meta) { meta.cursor.hotspot = {0x7fffffff, -1}; }));
}

TEST(PointerMeta, IsOfNoPointerWhereThePlaceIsOutrageous) {
  Meta meta;
  meta.cursor.position = {0x7fffffff, -0x7fffffff};
  EXPECT_FALSE(meta.read().place);
}

TEST(PointerMeta, IsNothingWhereItIsTooShort) {
  EXPECT_FALSE(readPointerMeta({}).place);
  const std::vector<std::uint8_t> bytes(sizeof(spa_meta_cursor) - 1, 1);
  EXPECT_FALSE(readPointerMeta(bytes).place);
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
