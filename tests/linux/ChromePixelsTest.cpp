#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <utility>
#include <vector>

#include "platform/linux/ChromePixels.h"

namespace vistrel::platform::linux_desktop {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Pixels = std::vector<std::uint32_t>;

/// Some like their neighbours, some not.
Pixels patchwork(std::size_t count) {
  std::mt19937 random(3);
  Pixels pixels;
  while (pixels.size() < count) pixels.insert(pixels.end(), 1 + random() % 5, random() % 4);
  pixels.resize(count);
  return pixels;
}

TEST(ChromePixels, AreWhatWasPutIn) {
  for (const int width : {1, 2, 7, 60}) {
    const Pixels pixels = patchwork(420);
    const ChromePixels chrome(width, pixels);
    EXPECT_EQ(chrome.height(), 420 / width);
    EXPECT_EQ(chrome.rows(0, chrome.height()), pixels);
  }
}

TEST(ChromePixels, GiveSomeRowsAlone) {
  const ChromePixels chrome(2, Pixels{1, 2, 3, 3, 3, 4});
  EXPECT_THAT(chrome.rows(0, 1), ElementsAre(1, 2));
  EXPECT_THAT(chrome.rows(1, 2), ElementsAre(3, 3, 3, 4));
  EXPECT_THAT(chrome.rows(2, 0), IsEmpty());
}

TEST(ChromePixels, AreNoneWithoutRows) {
  EXPECT_EQ(ChromePixels().height(), 0);
  EXPECT_EQ(ChromePixels(3, {}).height(), 0);
  EXPECT_THAT(ChromePixels().rows(0, 0), IsEmpty());
}

TEST(ChromePixels, HaveATop) {
  const ChromePixels chrome(2, Pixels{1, 1, 2, 3, 4, 4});
  EXPECT_EQ(chrome.top(2).height(), 2);
  EXPECT_THAT(chrome.top(2).rows(0, 2), ElementsAre(1, 1, 2, 3));
  EXPECT_EQ(chrome.top(0).height(), 0);
}

TEST(DifferingRows, AreNoneOfTheSamePixels) {
  const ChromePixels chrome(2, Pixels{1, 2, 3, 4});
  EXPECT_EQ(differingRows(chrome, chrome), std::pair(0, 0));
}

TEST(DifferingRows, ReachFromTheFirstToTheLast) {
  const ChromePixels chrome(2, Pixels{1, 2, 3, 4, 5, 6, 7, 8});
  EXPECT_EQ(differingRows(chrome, ChromePixels(2, Pixels{1, 2, 3, 0, 5, 6, 7, 8})),
            std::pair(1, 1));
  EXPECT_EQ(differingRows(chrome, ChromePixels(2, Pixels{1, 2, 0, 4, 5, 6, 7, 0})),
            std::pair(1, 3));
  EXPECT_EQ(differingRows(chrome, ChromePixels(2, Pixels{0, 2, 3, 4, 5, 6, 7, 8})),
            std::pair(0, 1));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
