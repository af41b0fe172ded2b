#include <gtest/gtest.h>
#include <random>
#include <tuple>

#include "platform/Image.h"

namespace vistrel::platform {
namespace {

using Color = std::tuple<int, int, int, int>;

Color colorOf(PixelBGRA pixel) { return {pixel.blue, pixel.green, pixel.red, pixel.alpha}; }

HostPixelBuffer randomBuffer(std::mt19937& random, std::int64_t width, std::int64_t height) {
  const std::int64_t bytesPerRow = width * 4 + std::uniform_int_distribution<int>(0, 9)(random);
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(bytesPerRow * height));
  for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random());
  return {pixelFormat32BGRA, width, height, bytesPerRow, std::move(bytes)};
}

/// The grid by its definition, from real numbers.
std::vector<Color> naiveGrid(const HostPixelBuffer& buffer, int rows, int columns) {
  std::vector<Color> samples;
  const auto& bytes = buffer.bytes();
  for (int i = 0; i < rows; ++i) {
    for (int j = 0; j < columns; ++j) {
      std::int64_t y = 0;
      while ((y + 1) * (rows - 1) <= i * (buffer.height() - 1)) ++y;
      std::int64_t x = 0;
      while ((x + 1) * (columns - 1) <= j * (buffer.width() - 1)) ++x;
      const auto at = static_cast<std::size_t>(y * buffer.bytesPerRow() + x * 4);
      samples.emplace_back(bytes[at], bytes[at + 1], bytes[at + 2], bytes[at + 3]);
    }
  }
  return samples;
}

std::vector<Color> visited(const PixelBuffer& buffer, int rows, int columns) {
  std::vector<Color> samples;
  EXPECT_TRUE(buffer.visitSampleGrid(rows, columns, [&](PixelBGRA pixel) {
    samples.push_back(colorOf(pixel));
    return true;
  }));
  return samples;
}

TEST(HostPixelBufferGrid, MatchesItsDefinitionForRandomSizes) {
  std::mt19937 random(1);
  std::uniform_int_distribution<std::int64_t> side(1, 300);
  for (int round = 0; round < 60; ++round) {
    const HostPixelBuffer buffer = randomBuffer(random, side(random), side(random));
    EXPECT_EQ(visited(buffer, 24, 24), naiveGrid(buffer, 24, 24))
        << buffer.width() << " x " << buffer.height();
  }
}

TEST(HostPixelBufferGrid, MatchesItsDefinitionForOtherGrids) {
  std::mt19937 random(2);
  const HostPixelBuffer buffer = randomBuffer(random, 37, 53);
  for (const auto& [rows, columns] : {std::pair{2, 2}, {2, 9}, {7, 3}, {100, 100}}) {
    EXPECT_EQ(visited(buffer, rows, columns), naiveGrid(buffer, rows, columns));
  }
}

TEST(HostPixelBufferGrid, IncludesTheLastRowAndColumn) {
  std::vector<std::uint8_t> bytes(100 * 80 * 4, 0);
  bytes[bytes.size() - 4] = 7;
  const HostPixelBuffer buffer(pixelFormat32BGRA, 100, 80, 400, std::move(bytes));
  EXPECT_EQ(visited(buffer, 24, 24).back(), Color(7, 0, 0, 0));
}

TEST(HostPixelBufferGrid, EndsAtTheFirstRefusal) {
  const HostPixelBuffer buffer(pixelFormat32BGRA, 10, 10, 40, std::vector<std::uint8_t>(400));
  int visits = 0;
  EXPECT_TRUE(buffer.visitSampleGrid(24, 24, [&visits](PixelBGRA) { return ++visits < 5; }));
  EXPECT_EQ(visits, 5);
}

TEST(HostPixelBufferGrid, VisitsNothingWhenItsMemoryCannotBeReached) {
  const HostPixelBuffer buffer(pixelFormat32BGRA, 10, 10, 40, {});
  EXPECT_FALSE(buffer.visitSampleGrid(24, 24, [](PixelBGRA) -> bool {
    ADD_FAILURE();
    return true;
  }));
}

TEST(HostPixelBufferGridDeathTest, EndsTheProgramSilentlyWhenAPositionOverflows) {
  constexpr std::int64_t huge = std::numeric_limits<std::int64_t>::max();
  const HostPixelBuffer tall(pixelFormat32BGRA, 2, huge, 0, std::vector<std::uint8_t>(16));
  EXPECT_EXIT(tall.visitSampleGrid(24, 24, [](PixelBGRA) { return true; }),
              testing::KilledBySignal(SIGABRT), "^$");
}

}  // namespace
}  // namespace vistrel::platform
