#include "tests/support/XWindowScreen.h"

#include <optional>
#include <ranges>
#include <stdexcept>

#include "tests/support/Poll.h"
#include "tests/support/XWindows.h"

namespace vistrel::testbed {
namespace {

bool holds(Rect outer, Rect inner) {
  return inner.x >= outer.x && inner.y >= outer.y &&
         inner.x + inner.width <= outer.x + outer.width &&
         inner.y + inner.height <= outer.y + outer.height;
}

}  // namespace

Picture XWindowScreen::read(Rect area) const {
  std::optional<Picture> picture;
  const auto isRead = [&] {
    try {
      picture = readAtOnce(area);
    } catch (const std::runtime_error&) {  // a window may go, or shrink, while it is looked at
    }
    return picture.has_value();
  };
  if (!eventually(isRead)) throw std::runtime_error("windows of X cannot be read");
  return *picture;
}

Picture XWindowScreen::readAtOnce(Rect area) const {
  Picture picture(area.width, area.height);
  for (const xcb_window_t window : stackingOrder(*connection_) | std::views::reverse) {
    const auto place = areaOf(*connection_, window);
    if (!place || !isViewable(*connection_, window) || !holds(*place, area)) continue;
    const Picture whole = readWindow(window, place->width, place->height);
    for (int y = 0; y < area.height; ++y) {
      for (int x = 0; x < area.width; ++x) {
        picture.at(x, y) = whole.at(area.x - place->x + x, area.y - place->y + y);
      }
    }
    return picture;
  }
  return picture;
}

}  // namespace vistrel::testbed
