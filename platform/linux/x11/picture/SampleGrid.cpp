#include "platform/linux/x11/picture/SampleGrid.h"

#include <algorithm>

namespace vistrel::platform::linux_desktop {
namespace {

struct AxisSampling {
  double scale;
  double origin;
};

AxisSampling samplingOfAxis(int start, int length, int samples) {
  // No transform may be flat, whatever the window's size.
  constexpr double smallestScale = 1.0 / 65536;
  const double scale = std::max(smallestScale, static_cast<double>(length - 1) / (samples - 1));
  // Sample i is to fall on i × scale, truncated; a pixel's centre lies half a step further. The
  // fractions that occur are multiples of 1 / (samples − 1): half of that keeps rounding away.
  const double clearance = 0.5 / (samples - 1);
  return {scale, start - scale / 2 + clearance};
}

}  // namespace

Sampling samplingOfGrid(const PixelRect& crop, int rows, int columns) {
  const auto x = samplingOfAxis(crop.x, crop.width, columns);
  const auto y = samplingOfAxis(crop.y, crop.height, rows);
  return {x.scale, y.scale, x.origin, y.origin, Filter::nearest};
}

bool SampleGrid::visit(const LivePicture& picture, int rows, int columns,
                       const std::function<bool(PixelBGRA)>& visit) {
  const PixelSize size{columns, rows};
  if (samples_.size != size) {
    auto samples = makeOpaqueCanvas(connection_, size);
    if (!samples) return false;
    samples_ = *std::move(samples);
  }
  drawScaled(connection_, picture.picture, samplingOfGrid(picture.crop, rows, columns),
             samples_.picture, rectOf(size));
  const auto image = replyTo<xcb_get_image_reply>(
      connection_.xcb(),
      xcb_get_image(connection_.xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, samples_.pixmap.id(), 0, 0,
                    static_cast<std::uint16_t>(columns), static_cast<std::uint16_t>(rows), ~0u));
  if (!image) return false;
  const auto* bytes = xcb_get_image_data(image.get());
  const auto place = [](int i, int samples, int length) {
    return i * (length - 1) / (samples - 1);
  };
  for (int i = 0; i < rows * columns; ++i, bytes += 4) {
    const bool outside = picture.isOutside(place(i % columns, columns, picture.size().width),
                                           place(i / columns, rows, picture.size().height));
    const PixelBGRA pixel{bytes[0], bytes[1], bytes[2], 0xff};
    if (!visit(outside ? PixelBGRA{0, 0, 0, 0xff} : pixel)) break;
  }
  return true;
}

}  // namespace vistrel::platform::linux_desktop
