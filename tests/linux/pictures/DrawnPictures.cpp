#include "tests/linux/pictures/DrawnPictures.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <vector>

#include "platform/linux/XcbRequests.h"

namespace vistrel::platform::linux_desktop {
namespace {

using testbed::Rgb;

/// The mean of `count` pixels that lie `step` apart, from `begin` to `end` in pixels.
template <class At>
Rgb meanOf(double begin, double end, const At& at) {
  std::array<double, 3> sum{};
  for (int i = static_cast<int>(begin); i < end; ++i) {
    const double share = std::min(end, i + 1.0) - std::max(begin, static_cast<double>(i));
    const Rgb& pixel = at(i);
    sum[0] += share * pixel.red;
    sum[1] += share * pixel.green;
    sum[2] += share * pixel.blue;
  }
  const auto channel = [&](double value) {
    return static_cast<std::uint8_t>(std::lround(value / (end - begin)));
  };
  return {channel(sum[0]), channel(sum[1]), channel(sum[2])};
}

}  // namespace

std::shared_ptr<const LivePicture> uploaded(Connection& connection, const Bitmap& picture,
                                            int margin) {
  constexpr std::uint32_t magenta = 0xff00ff;
  const PixelSize size{picture.width() + 2 * margin, picture.height() + 2 * margin};
  std::vector<std::uint32_t> pixels(static_cast<std::size_t>(size.width * size.height), magenta);
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      const Rgb& pixel = picture.at(x, y);
      pixels[static_cast<std::size_t>((y + margin) * size.width + x + margin)] =
          std::uint32_t{pixel.red} << 16 | std::uint32_t{pixel.green} << 8 | pixel.blue;
    }
  }
  auto canvas = makeOpaqueCanvas(connection, size);
  putRows(connection, canvas.pixmap, 24, rectOf(size),
          reinterpret_cast<const std::uint8_t*>(pixels.data()),
          static_cast<std::size_t>(size.width) * sizeof(std::uint32_t));
  return std::make_shared<LivePicture>(
      LivePicture{std::move(canvas.pixmap),
                  std::move(canvas.picture),
                  {margin, margin, picture.width(), picture.height()}});
}

Bitmap contentsOf(Connection& connection, const Canvas& canvas) {
  Bitmap picture(canvas.size.width, canvas.size.height);
  const auto image = replyTo<xcb_get_image_reply>(
      connection.xcb(),
      xcb_get_image(connection.xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, canvas.pixmap.id(), 0, 0,
                    static_cast<std::uint16_t>(canvas.size.width),
                    static_cast<std::uint16_t>(canvas.size.height), ~0u));
  if (!image) throw std::runtime_error("a canvas cannot be read");
  const auto* bytes = xcb_get_image_data(image.get());
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x, bytes += 4) {
      picture.at(x, y) = {bytes[2], bytes[1], bytes[0]};
    }
  }
  return picture;
}

Bitmap areaAveraged(const Bitmap& source, PixelSize size) {
  const double stepX = static_cast<double>(source.width()) / size.width;
  const double stepY = static_cast<double>(source.height()) / size.height;
  Bitmap narrowed(size.width, source.height());
  for (int y = 0; y < source.height(); ++y) {
    for (int x = 0; x < size.width; ++x) {
      narrowed.at(x, y) = meanOf(x * stepX, std::min<double>((x + 1) * stepX, source.width()),
                                 [&](int column) -> const Rgb& { return source.at(column, y); });
    }
  }
  Bitmap result(size.width, size.height);
  for (int y = 0; y < size.height; ++y) {
    for (int x = 0; x < size.width; ++x) {
      result.at(x, y) = meanOf(y * stepY, std::min<double>((y + 1) * stepY, source.height()),
                               [&](int row) -> const Rgb& { return narrowed.at(x, row); });
    }
  }
  return result;
}

double meanError(const Bitmap& a, const Bitmap& b) {
  double sum = 0;
  for (int y = 0; y < a.height(); ++y) {
    for (int x = 0; x < a.width(); ++x) {
      const Rgb& one = a.at(x, y);
      const Rgb& other = b.at(x, y);
      sum += std::abs(one.red - other.red) + std::abs(one.green - other.green) +
             std::abs(one.blue - other.blue);
    }
  }
  return sum / (3.0 * a.width() * a.height());
}

}  // namespace vistrel::platform::linux_desktop
