#include "platform/linux/qt/paint/TextHalo.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace vistrel::platform::linux_desktop {

namespace {

/// Of the bell curve by which a halo ends, in points.
constexpr double deviation = haloReach / 3;
/// By which the blurred letters become dark close to them, a full stop on its own too.
constexpr double gain = 8;
constexpr double darkest = 0.85;

/// From one end of the curve to the other; they come to 1.
std::vector<double> weightsOfCurve(double deviationInPixels) {
  const int reach = static_cast<int>(std::ceil(3 * deviationInPixels));
  std::vector<double> weights;
  double sum = 0;
  for (int i = -reach; i <= reach; ++i) {
    weights.push_back(std::exp(-i * i / (2 * deviationInPixels * deviationInPixels)));
    sum += weights.back();
  }
  for (double& each : weights) each /= sum;
  return weights;
}

/// How much of each pixel is covered, row by row, from 0 to 1.
struct Coverage {
  int width;
  int height;
  std::vector<double> values;

  double& at(int x, int y) {
    return values[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                  static_cast<std::size_t>(x)];
  }
};

Coverage coverageOf(const QImage& letters) {
  Coverage coverage{letters.width(), letters.height(), {}};
  for (int y = 0; y < letters.height(); ++y) {
    for (int x = 0; x < letters.width(); ++x) {
      coverage.values.push_back(qAlpha(letters.pixel(x, y)) / 255.0);
    }
  }
  return coverage;
}

/// Blurs along the rows, and turns rows into columns: twice is the whole blur.
Coverage blurredAndTurned(Coverage& coverage, const std::vector<double>& weights) {
  const int reach = static_cast<int>(weights.size() / 2);
  Coverage turned{coverage.height, coverage.width, std::vector<double>(coverage.values.size())};
  for (int y = 0; y < coverage.height; ++y) {
    for (int x = 0; x < coverage.width; ++x) {
      const double value = coverage.at(x, y);
      if (value == 0) continue;
      const int last = std::min(x + reach, coverage.width - 1);
      for (int there = std::max(x - reach, 0); there <= last; ++there) {
        turned.at(y, there) += value * weights[static_cast<std::size_t>(there - x + reach)];
      }
    }
  }
  return turned;
}

}  // namespace

QImage haloAround(const QImage& letters) {
  const auto weights = weightsOfCurve(deviation * letters.devicePixelRatio());
  Coverage sharp = coverageOf(letters);
  Coverage turned = blurredAndTurned(sharp, weights);
  Coverage blurred = blurredAndTurned(turned, weights);
  QImage halo(letters.size(), QImage::Format_ARGB32_Premultiplied);
  halo.setDevicePixelRatio(letters.devicePixelRatio());
  for (int y = 0; y < halo.height(); ++y) {
    for (int x = 0; x < halo.width(); ++x) {
      const double dark = std::min(gain * blurred.at(x, y), darkest);
      halo.setPixelColor(x, y, QColor(0, 0, 0, static_cast<int>(std::lround(dark * 255))));
    }
  }
  return halo;
}

}  // namespace vistrel::platform::linux_desktop
