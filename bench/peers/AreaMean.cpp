#include "bench/peers/AreaMean.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace vistrel::bench {
namespace {

using testbed::Picture;
using testbed::Rgb;

/// How much of each source pixel one small pixel covers, along one axis.
struct Cover {
  int first = 0;
  std::vector<double> shares;
};

std::vector<Cover> covers(int from, int to, double shift) {
  const double ratio = static_cast<double>(from) / to;
  std::vector<Cover> result;
  for (int i = 0; i < to; ++i) {
    const double begin = std::clamp((i + shift) * ratio, 0.0, from - ratio);
    const double end = begin + ratio;
    Cover cover{.first = static_cast<int>(begin)};
    for (int pixel = cover.first; pixel < from && pixel < end; ++pixel) {
      cover.shares.push_back((std::min(end, pixel + 1.0) - std::max<double>(begin, pixel)) / ratio);
    }
    result.push_back(std::move(cover));
  }
  return result;
}

using Sum = std::array<double, 3>;

void add(Sum& sum, double share, const Sum& value) {
  for (std::size_t i = 0; i < sum.size(); ++i) sum[i] += share * value[i];
}

Rgb rounded(const Sum& sum) {
  return {static_cast<std::uint8_t>(std::lround(sum[0])),
          static_cast<std::uint8_t>(std::lround(sum[1])),
          static_cast<std::uint8_t>(std::lround(sum[2]))};
}

Sum meanInRow(const Picture& source, int y, const Cover& columns) {
  Sum sum{};
  for (std::size_t i = 0; i < columns.shares.size(); ++i) {
    const Rgb& pixel = source.at(columns.first + static_cast<int>(i), y);
    add(sum, columns.shares[i],
        {static_cast<double>(pixel.red), static_cast<double>(pixel.green),
         static_cast<double>(pixel.blue)});
  }
  return sum;
}

}  // namespace

Picture areaMean(const Picture& source, Extent extent, Shift shift) {
  const auto columns = covers(source.width(), extent.width, shift.x);
  const auto rows = covers(source.height(), extent.height, shift.y);
  Picture result(extent.width, extent.height);
  for (int y = 0; y < extent.height; ++y) {
    const Cover& covered = rows[static_cast<std::size_t>(y)];
    for (int x = 0; x < extent.width; ++x) {
      Sum sum{};
      for (std::size_t i = 0; i < covered.shares.size(); ++i) {
        add(sum, covered.shares[i],
            meanInRow(source, covered.first + static_cast<int>(i),
                      columns[static_cast<std::size_t>(x)]));
      }
      result.at(x, y) = rounded(sum);
    }
  }
  return result;
}

double signalToNoise(const Picture& a, const Picture& b, testbed::Rect part) {
  constexpr double most = 99;
  double squares = 0;
  for (int y = part.y; y < part.y + part.height; ++y) {
    for (int x = part.x; x < part.x + part.width; ++x) {
      const Rgb& one = a.at(x, y);
      const Rgb& other = b.at(x, y);
      for (const int difference :
           {one.red - other.red, one.green - other.green, one.blue - other.blue}) {
        squares += difference * difference;
      }
    }
  }
  const double mean = squares / (3.0 * part.width * part.height);
  return mean == 0 ? most : std::min(most, 10 * std::log10(255.0 * 255.0 / mean));
}

}  // namespace vistrel::bench
