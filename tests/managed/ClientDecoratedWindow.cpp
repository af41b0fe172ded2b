#include "tests/managed/ClientDecoratedWindow.h"

#include <array>
#include <stdexcept>

#include "tests/support/Poll.h"
#include "tests/support/TestWindow.h"
#include "tests/support/XWindows.h"

namespace vistrel::testbed {
namespace {

constexpr std::uint8_t deep = 32;

xcb_visualid_t translucentVisual(const xcb_screen_t& screen) {
  for (auto depth = xcb_screen_allowed_depths_iterator(&screen); depth.rem > 0;
       xcb_depth_next(&depth)) {
    if (depth.data->depth == deep && depth.data->visuals_len > 0) {
      return xcb_depth_visuals(depth.data)->visual_id;
    }
  }
  throw std::runtime_error("the display has no translucent windows");
}

}  // namespace

ClientDecoratedWindow::ClientDecoratedWindow(const std::string& display, Rect visible, int shadow)
    : connection_(display),
      id_(xcb_generate_id(connection_.get())),
      pen_(xcb_generate_id(connection_.get())),
      shadow_(shadow),
      colour_(green) {
  createWindow({visible.x - shadow, visible.y - shadow, visible.width + 2 * shadow,
                visible.height + 2 * shadow});
  const std::string motif = "_MOTIF_WM_HINTS";
  connection_.setNumbers(id_, motif, connection_.atom(motif), {2, 0, 0, 0, 0});
  connection_.setText(id_, "_NET_WM_NAME", connection_.atom("UTF8_STRING"), "Shadowed");
  setShadow(shadow);
  xcb_map_window(connection_.get(), id_);
  if (!eventually([&] { return isViewable(connection_, id_); })) {
    throw std::runtime_error("a window with a shadow did not get on the screen");
  }
  paint(colour_);
}

void ClientDecoratedWindow::createWindow(Rect whole) {
  const auto visual = translucentVisual(connection_.screen());
  const xcb_colormap_t colours = xcb_generate_id(connection_.get());
  xcb_create_colormap(connection_.get(), XCB_COLORMAP_ALLOC_NONE, colours, connection_.root(),
                      visual);
  const std::array<std::uint32_t, 3> values{0, 0, colours};
  xcb_create_window(
      connection_.get(), deep, id_, connection_.root(), static_cast<std::int16_t>(whole.x),
      static_cast<std::int16_t>(whole.y), static_cast<std::uint16_t>(whole.width),
      static_cast<std::uint16_t>(whole.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
      XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_COLORMAP, values.data());
  xcb_create_gc(connection_.get(), pen_, id_, 0, nullptr);
}

Rect ClientDecoratedWindow::visible() const {
  const Rect area = areaOf(connection_, id_).value_or(Rect{});
  return {area.x + shadow_, area.y + shadow_, area.width - 2 * shadow_, area.height - 2 * shadow_};
}

void ClientDecoratedWindow::setShadow(int shadow) {
  shadow_ = shadow;
  const auto width = static_cast<std::uint32_t>(shadow);
  connection_.setNumbers(id_, "_GTK_FRAME_EXTENTS", XCB_ATOM_CARDINAL,
                         {width, width, width, width});
  connection_.sync();
}

void ClientDecoratedWindow::paint(Rgb colour) {
  colour_ = colour;
  constexpr std::uint32_t quarterBlack = 0x40000000;
  constexpr std::uint32_t opaque = 0xff000000;
  const Rect area = areaOf(connection_, id_).value_or(Rect{});
  fill({0, 0, area.width, area.height}, quarterBlack);
  const Rect inside = visible();
  fill({shadow_, shadow_, inside.width, inside.height},
       opaque | std::uint32_t{colour.red} << 16 | std::uint32_t{colour.green} << 8 | colour.blue);
  connection_.sync();
}

void ClientDecoratedWindow::fill(Rect part, std::uint32_t pixel) {
  const xcb_rectangle_t rectangle{
      static_cast<std::int16_t>(part.x), static_cast<std::int16_t>(part.y),
      static_cast<std::uint16_t>(part.width), static_cast<std::uint16_t>(part.height)};
  xcb_change_gc(connection_.get(), pen_, XCB_GC_FOREGROUND, &pixel);
  xcb_poly_fill_rectangle(connection_.get(), id_, pen_, 1, &rectangle);
}

}  // namespace vistrel::testbed
