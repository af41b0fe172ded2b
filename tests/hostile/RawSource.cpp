#include "tests/hostile/RawSource.h"

#include <array>

namespace vistrel::hostile {

using testbed::Rect;
using testbed::Rgb;

RawSource::RawSource(const testbed::XConnection& connection, const Options& options)
    : connection_(connection),
      id_(xcb_generate_id(connection.get())),
      colours_(options.visual ? xcb_generate_id(connection.get())
                              : connection.screen().default_colormap),
      pen_(xcb_generate_id(connection.get())),
      area_(options.area) {
  auto* const xcb = connection_.get();
  xcb_visualid_t visual = connection_.screen().root_visual;
  if (options.visual) {
    visual = options.visual->visual_id;
    xcb_create_colormap(xcb, XCB_COLORMAP_ALLOC_NONE, colours_, connection_.root(), visual);
  }
  const std::array<std::uint32_t, 4> values{0, 0xffffffff, options.overrideRedirect ? 1u : 0u,
                                            colours_};
  xcb_create_window(
      xcb, options.depth, id_, connection_.root(), static_cast<std::int16_t>(area_.x),
      static_cast<std::int16_t>(area_.y), static_cast<std::uint16_t>(area_.width),
      static_cast<std::uint16_t>(area_.height), static_cast<std::uint16_t>(options.border),
      XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
      XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_COLORMAP,
      values.data());
  xcb_create_gc(xcb, pen_, id_, 0, nullptr);
  map();
}

void RawSource::paint(const testbed::Quadrants& picture) {
  const int middleX = area_.width / 2;
  const int middleY = area_.height / 2;
  const int right = area_.width - middleX;
  const int bottom = area_.height - middleY;
  fill({0, 0, middleX, middleY}, picture.topLeft);
  fill({middleX, 0, right, middleY}, picture.topRight);
  fill({0, middleY, middleX, bottom}, picture.bottomLeft);
  fill({middleX, middleY, right, bottom}, picture.bottomRight);
  connection_.sync();
}

void RawSource::fill(Rect part, Rgb colour) {
  const auto wide = [](std::uint8_t channel) { return static_cast<std::uint16_t>(channel * 257); };
  const testbed::XReply<xcb_alloc_color_reply_t> allocated(
      xcb_alloc_color_reply(connection_.get(),
                            xcb_alloc_color(connection_.get(), colours_, wide(colour.red),
                                            wide(colour.green), wide(colour.blue)),
                            nullptr));
  const std::uint32_t pixel = allocated ? allocated->pixel : 0;
  const xcb_rectangle_t rectangle{
      static_cast<std::int16_t>(part.x), static_cast<std::int16_t>(part.y),
      static_cast<std::uint16_t>(part.width), static_cast<std::uint16_t>(part.height)};
  xcb_change_gc(connection_.get(), pen_, XCB_GC_FOREGROUND, &pixel);
  xcb_poly_fill_rectangle(connection_.get(), id_, pen_, 1, &rectangle);
}

void RawSource::resize(int width, int height) {
  const std::array<std::uint32_t, 2> values{static_cast<std::uint32_t>(width),
                                            static_cast<std::uint32_t>(height)};
  xcb_configure_window(connection_.get(), id_, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                       values.data());
  area_.width = width;
  area_.height = height;
  connection_.sync();
}

void RawSource::map() {
  xcb_map_window(connection_.get(), id_);
  connection_.sync();
}

void RawSource::unmap() {
  xcb_unmap_window(connection_.get(), id_);
  connection_.sync();
}

void RawSource::destroy() {
  xcb_destroy_window(connection_.get(), id_);
  connection_.sync();
}

const xcb_visualtype_t* otherVisual(const testbed::XConnection& connection, std::uint8_t depth) {
  const auto& screen = connection.screen();
  for (auto depths = xcb_screen_allowed_depths_iterator(&screen); depths.rem;
       xcb_depth_next(&depths)) {
    if (depths.data->depth != depth) continue;
    for (auto visuals = xcb_depth_visuals_iterator(depths.data); visuals.rem;
         xcb_visualtype_next(&visuals)) {
      const bool isTrueColor = visuals.data->_class == XCB_VISUAL_CLASS_TRUE_COLOR;
      if (isTrueColor && visuals.data->visual_id != screen.root_visual) return visuals.data;
    }
  }
  return nullptr;
}

}  // namespace vistrel::hostile
