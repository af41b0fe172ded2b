#pragma once

#include <cstdint>
#include <map>
#include <utility>
#include <xcb/render.h>

namespace vistrel::platform::linux_desktop {

/// The RENDER formats that pictures are made with; XCB_NONE where the server has none.
struct PictureFormats {
  xcb_render_pictformat_t alphaMask = XCB_NONE;    // a8, depth 8
  xcb_render_pictformat_t opaque = XCB_NONE;       // x8r8g8b8, depth 24
  xcb_render_pictformat_t translucent = XCB_NONE;  // a8r8g8b8, depth 32
  /// How a window of a visual is drawn.
  std::map<xcb_visualid_t, xcb_render_pictformat_t> ofVisual;
  /// The same without the alpha that some visuals have, so that such windows are read as opaque.
  std::map<xcb_visualid_t, xcb_render_pictformat_t> opaqueOfVisual;
};

PictureFormats pictureFormats(const xcb_render_query_pict_formats_reply_t& reply);

}  // namespace vistrel::platform::linux_desktop
