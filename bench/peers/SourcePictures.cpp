#include "bench/peers/SourcePictures.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <random>

#include "tests/support/TestWindow.h"

namespace vistrel::bench {

using testbed::Picture;
using testbed::Rgb;

namespace {

std::uint8_t channel(double value) {
  return static_cast<std::uint8_t>(std::clamp(std::lround(value), 0L, 255L));
}

void fill(Picture& picture, testbed::Rect area, Rgb colour) {
  const int right = std::min(area.x + area.width, picture.width());
  const int bottom = std::min(area.y + area.height, picture.height());
  for (int y = area.y; y < bottom; ++y) {
    for (int x = area.x; x < right; ++x) picture.at(x, y) = colour;
  }
}

}  // namespace

Picture photo(int width, int height, int variant) {
  Picture picture(width, height);
  std::minstd_rand random(static_cast<unsigned>(1 + variant));
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const double fromMiddleX = x - width / 2.0;
      const double fromMiddleY = y - height / 2.0;
      const double distance = fromMiddleX * fromMiddleX + fromMiddleY * fromMiddleY;
      const double ring = 128 + 90 * std::cos(distance * 0.0004 + variant * 1.6);
      const double noise = static_cast<double>(random() % 16);
      picture.at(x, y) = {channel(ring + noise), channel(255.0 * x / width),
                          channel(200.0 * y / height + 30 * std::sin(variant + x * 0.02) + noise)};
    }
  }
  return picture;
}

Picture writing(int width, int height) {
  constexpr int lineHeight = 16;
  constexpr int letterWidth = 7;
  constexpr int letterHeight = 9;
  Picture picture(width, height);
  fill(picture, {0, 0, width, height}, testbed::white);
  std::minstd_rand random(1);
  for (int line = 4; line < height; line += lineHeight) {
    for (int letter = 6; letter + letterWidth < width; letter += letterWidth) {
      if (random() % 6 == 0) continue;
      const int upright = static_cast<int>(random() % (letterWidth - 2));
      const int bar = static_cast<int>(random() % letterHeight);
      const int thickness = 1 + static_cast<int>(random() % 2);
      fill(picture, {letter + upright, line, thickness, letterHeight}, {30, 30, 40});
      fill(picture, {letter, line + bar, letterWidth - 2, 1}, {30, 30, 40});
    }
  }
  return picture;
}

Picture grid(int width, int height) {
  Picture picture(width, height);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      // Rows in the upper half, columns in the left of the lower one, single pixels beside them.
      const bool isRows = y < height / 2;
      const bool isColumns = !isRows && x < width / 2;
      const int phase = isRows ? y : isColumns ? x : x + y;
      picture.at(x, y) = phase % 2 == 0 ? testbed::black : testbed::white;
    }
  }
  return picture;
}

}  // namespace vistrel::bench
