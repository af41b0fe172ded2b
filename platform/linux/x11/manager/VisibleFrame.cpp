#include "platform/linux/x11/manager/VisibleFrame.h"

#include <algorithm>

#include "platform/linux/x11/manager/Manager.h"
#include "platform/linux/x11/server/PixelGeometry.h"

namespace vistrel::platform::linux_desktop {
namespace {

PixelRect grown(const PixelRect& rect, const Extents& by) {
  return {rect.x - by.left, rect.y - by.top, rect.width + by.left + by.right,
          rect.height + by.top + by.bottom};
}

/// Many times the thickest title bar, and the widest shadow: anything can stand in a property.
bool isAbsurd(std::uint32_t extent) { return extent > 1000; }

}  // namespace

Extents extentsFrom(const std::vector<std::uint32_t>& property) {
  if (property.size() != 4 || std::any_of(property.begin(), property.end(), isAbsurd)) return {};
  const std::vector<int> widths(property.begin(), property.end());
  return {widths[0], widths[1], widths[2], widths[3]};
}

PixelRect visibleFrame(const PixelRect& client, const Extents& decoration, const Extents& shadow) {
  // A frame around a window that draws a shadow shows that too.
  if (decoration != Extents{}) return grown(client, decoration);
  const auto visible = grown(client, {-shadow.left, -shadow.right, -shadow.top, -shadow.bottom});
  // Shadows wider than the window itself are a client's mistake.
  return isEmpty(visible) ? client : visible;
}

Decoration decorationOf(Connection& connection) {
  // KWin 5.27.5.
  const bool isDrawnByCompositor = isComposited(connection) && managerName(connection) == "KWin";
  return isDrawnByCompositor ? Decoration::onScreenAlone : Decoration::inFrames;
}

FramedWindowRequest::FramedWindowRequest(Connection& connection, xcb_window_t client,
                                         xcb_window_t reference)
    : size_(connection.xcb(), xcb_get_geometry(connection.xcb(), client)),
      place_(connection.xcb(),
             xcb_translate_coordinates(connection.xcb(), client, reference, 0, 0)),
      tree_(connection.xcb(), xcb_query_tree(connection.xcb(), client)),
      decoration_(connection, client, "_NET_FRAME_EXTENTS"),
      shadow_(connection, client, "_GTK_FRAME_EXTENTS") {}

std::optional<FramedWindow> FramedWindowRequest::fetch(Decoration decoration) {
  const auto size = size_.fetch();
  const auto place = place_.fetch();
  const auto tree = tree_.fetch();
  if (!size || !place || !tree) return std::nullopt;
  FramedWindow window;
  window.client = {place->dst_x, place->dst_y, size->width, size->height};
  // mutter 43.8 leaves extents on a window that it has taken out of its frame.
  const bool hasFrame = tree->parent != tree->root;
  if (hasFrame) window.decoration = extentsFrom(decoration_.fetch().values());
  const bool isSeen = decoration == Decoration::inFrames;
  window.visible = visibleFrame(window.client, isSeen ? window.decoration : Extents{},
                                extentsFrom(shadow_.fetch().values()));
  return window;
}

}  // namespace vistrel::platform::linux_desktop
