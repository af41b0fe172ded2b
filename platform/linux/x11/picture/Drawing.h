#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/Color.h"
#include "platform/linux/x11/server/Connection.h"
#include "platform/linux/x11/server/PixelGeometry.h"
#include "platform/linux/x11/server/Resources.h"

namespace vistrel::platform::linux_desktop {

// Drawing in the display server through RENDER. Nothing here waits for an answer, unless it says
// so.

/// A pixmap and the picture that draws and reads it; outside its edges it repeats them.
struct Canvas {
  Pixmap pixmap;
  Picture picture;
  PixelSize size;
};

/// None where the server has no memory for it. Waits for the server's answer.
std::optional<Canvas> makeCanvas(Connection& connection, std::uint8_t depth,
                                 xcb_render_pictformat_t format, PixelSize size);
/// The same, 24 bits without alpha, as all copies of sources are.
std::optional<Canvas> makeOpaqueCanvas(Connection& connection, PixelSize size);
/// Read outside its edges it repeats them, or is transparent.
Picture makePicture(Connection& connection, xcb_drawable_t drawable, xcb_render_pictformat_t format,
                    xcb_render_repeat_t outside = XCB_RENDER_REPEAT_PAD);
/// One colour everywhere.
Picture makeSolid(Connection& connection, const Color& color);
GContext makeGContext(Connection& connection, xcb_drawable_t drawable);

enum class Filter { bilinear, nearest };

/// Where in a source a pixel of the target lies: scale × (pixel's centre) + origin.
struct Sampling {
  double scaleX = 1;
  double scaleY = 1;
  double originX = 0;
  double originY = 0;
  Filter filter = Filter::bilinear;
};

/// Draws a source at half its size: each pixel is the mean of four.
inline constexpr Sampling halving{2, 2, 0, 0, Filter::bilinear};

/// Draws a source of that size so that it fills `place`.
Sampling samplingInto(const PixelRect& place, double sourceWidth, double sourceHeight);

/// Replaces `area` of `target`.
void drawScaled(Connection& connection, const Picture& source, const Sampling& sampling,
                const Picture& target, const PixelRect& area);
/// Lays a translucent source over `area` of `target`.
void layOverScaled(Connection& connection, const Picture& source, const Sampling& sampling,
                   const Picture& target, const PixelRect& area);
/// Replaces or lays over: `area` of `target` from the unscaled `source`, the source's pixel
/// (x, y) being the target's (x + dx, y + dy).
void copyUnscaled(Connection& connection, xcb_render_pict_op_t operation, const Picture& source,
                  const Picture& target, const PixelRect& area, int dx = 0, int dy = 0);
/// Lays `area` of the unscaled `source` over that of `target` at an opacity that a solid picture's
/// alpha gives.
void blendUnscaled(Connection& connection, const Picture& source, const Picture& opacity,
                   const Picture& target, const PixelRect& area);
/// Replaces `area` of `target` with a colour.
void fill(Connection& connection, const Picture& target, const Color& color, const PixelRect& area);

/// Sends rows of pixels into `area` of `pixmap`, in as many requests as it takes. `stride` bytes a
/// row, a multiple of four.
void putRows(Connection& connection, const Pixmap& pixmap, std::uint8_t depth,
             const PixelRect& area, const std::uint8_t* bytes, std::size_t stride);

}  // namespace vistrel::platform::linux_desktop
