#include "platform/linux/x11/picture/Drawing.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace vistrel::platform::linux_desktop {
namespace {

xcb_render_fixed_t fixed(double value) {
  return static_cast<xcb_render_fixed_t>(std::lround(value * 65536));
}

bool isUnscaled(const Sampling& sampling) { return sampling.scaleX == 1 && sampling.scaleY == 1; }

void setSampling(Connection& connection, const Picture& source, const Sampling& sampling) {
  const bool unscaled = isUnscaled(sampling);
  const xcb_render_transform_t transform{fixed(sampling.scaleX),
                                         0,
                                         unscaled ? 0 : fixed(sampling.originX),
                                         0,
                                         fixed(sampling.scaleY),
                                         unscaled ? 0 : fixed(sampling.originY),
                                         0,
                                         0,
                                         fixed(1)};
  const std::string_view filter = sampling.filter == Filter::nearest ? "nearest" : "bilinear";
  xcb_render_set_picture_transform(connection.xcb(), source.id(), transform);
  xcb_render_set_picture_filter(connection.xcb(), source.id(),
                                static_cast<std::uint16_t>(filter.size()), filter.data(), 0,
                                nullptr);
}

void composite(Connection& connection, xcb_render_pict_op_t operation, xcb_render_picture_t source,
               xcb_render_picture_t mask, const Picture& target, const PixelRect& area, int dx,
               int dy) {
  const auto wire = wireRect(area);
  xcb_render_composite(connection.xcb(), static_cast<std::uint8_t>(operation), source, mask,
                       target.id(), static_cast<std::int16_t>(area.x - dx),
                       static_cast<std::int16_t>(area.y - dy), 0, 0, wire.x, wire.y, wire.width,
                       wire.height);
}

void compositeSampled(Connection& connection, xcb_render_pict_op_t operation, const Picture& source,
                      const Sampling& sampling, const Picture& target, const PixelRect& area) {
  setSampling(connection, source, sampling);
  // An unscaled source is moved by whole pixels, which servers do by plain copying.
  const int dx = isUnscaled(sampling) ? -static_cast<int>(std::lround(sampling.originX)) : 0;
  const int dy = isUnscaled(sampling) ? -static_cast<int>(std::lround(sampling.originY)) : 0;
  composite(connection, operation, source.id(), XCB_NONE, target, area, dx, dy);
}

xcb_render_color_t premultiplied(const Color& color) {
  const auto channel = [](double value) {
    return static_cast<std::uint16_t>(std::lround(std::clamp(value, 0.0, 1.0) * 0xffff));
  };
  return {channel(color.red * color.alpha), channel(color.green * color.alpha),
          channel(color.blue * color.alpha), channel(color.alpha)};
}

}  // namespace

std::optional<Canvas> makeCanvas(Connection& connection, std::uint8_t depth,
                                 xcb_render_pictformat_t format, PixelSize size) {
  Pixmap pixmap(connection.xcb());
  const auto made = xcb_create_pixmap_checked(
      connection.xcb(), depth, pixmap.id(), connection.root(),
      static_cast<std::uint16_t>(size.width), static_cast<std::uint16_t>(size.height));
  if (failureOf(connection.xcb(), made)) {
    pixmap.abandon();
    return std::nullopt;
  }
  auto picture = makePicture(connection, pixmap.id(), format);
  return Canvas{std::move(pixmap), std::move(picture), size};
}

std::optional<Canvas> makeOpaqueCanvas(Connection& connection, PixelSize size) {
  return makeCanvas(connection, 24, connection.formats().opaque, size);
}

Picture makePicture(Connection& connection, xcb_drawable_t drawable, xcb_render_pictformat_t format,
                    xcb_render_repeat_t outside) {
  Picture picture(connection.xcb());
  const std::uint32_t repeat = outside;
  xcb_render_create_picture(connection.xcb(), picture.id(), drawable, format, XCB_RENDER_CP_REPEAT,
                            &repeat);
  return picture;
}

Picture makeSolid(Connection& connection, const Color& color) {
  Picture picture(connection.xcb());
  xcb_render_create_solid_fill(connection.xcb(), picture.id(), premultiplied(color));
  return picture;
}

GContext makeGContext(Connection& connection, xcb_drawable_t drawable) {
  GContext context(connection.xcb());
  const std::uint32_t none = 0;
  xcb_create_gc(connection.xcb(), context.id(), drawable, XCB_GC_GRAPHICS_EXPOSURES, &none);
  return context;
}

Sampling samplingInto(const PixelRect& place, double sourceWidth, double sourceHeight) {
  const double scaleX = sourceWidth / place.width;
  const double scaleY = sourceHeight / place.height;
  return {scaleX, scaleY, -scaleX * place.x, -scaleY * place.y, Filter::bilinear};
}

void drawScaled(Connection& connection, const Picture& source, const Sampling& sampling,
                const Picture& target, const PixelRect& area) {
  compositeSampled(connection, XCB_RENDER_PICT_OP_SRC, source, sampling, target, area);
}

void layOverScaled(Connection& connection, const Picture& source, const Sampling& sampling,
                   const Picture& target, const PixelRect& area) {
  compositeSampled(connection, XCB_RENDER_PICT_OP_OVER, source, sampling, target, area);
}

void copyUnscaled(Connection& connection, xcb_render_pict_op_t operation, const Picture& source,
                  const Picture& target, const PixelRect& area, int dx, int dy) {
  composite(connection, operation, source.id(), XCB_NONE, target, area, dx, dy);
}

void blendUnscaled(Connection& connection, const Picture& source, const Picture& opacity,
                   const Picture& target, const PixelRect& area) {
  composite(connection, XCB_RENDER_PICT_OP_OVER, source.id(), opacity.id(), target, area, 0, 0);
}

void fill(Connection& connection, const Picture& target, const Color& color,
          const PixelRect& area) {
  const auto wire = wireRect(area);
  xcb_render_fill_rectangles(connection.xcb(), XCB_RENDER_PICT_OP_SRC, target.id(),
                             premultiplied(color), 1, &wire);
}

void putRows(Connection& connection, const Pixmap& pixmap, std::uint8_t depth,
             const PixelRect& area, const std::uint8_t* bytes, std::size_t stride) {
  constexpr std::size_t headerBytes = 64;
  // X.Org's server 21.1.7 throws a client out for whose request it has no memory.
  constexpr std::size_t modest = 1 << 18;
  const std::size_t most =
      std::min(modest, xcb_get_maximum_request_length(connection.xcb()) * std::size_t{4});
  const int rowsPerRequest =
      std::max(1, static_cast<int>(std::min<std::size_t>((most - headerBytes) / stride, 0x7fff)));
  const auto context = makeGContext(connection, pixmap.id());
  for (int row = 0; row < area.height; row += rowsPerRequest) {
    const int count = std::min(rowsPerRequest, area.height - row);
    xcb_put_image(connection.xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap.id(), context.id(),
                  static_cast<std::uint16_t>(area.width), static_cast<std::uint16_t>(count),
                  static_cast<std::int16_t>(area.x), static_cast<std::int16_t>(area.y + row), 0,
                  depth, static_cast<std::uint32_t>(count * stride),
                  bytes + static_cast<std::size_t>(row) * stride);
  }
}

}  // namespace vistrel::platform::linux_desktop
