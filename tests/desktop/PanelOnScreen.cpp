#include "tests/desktop/PanelOnScreen.h"

#include <algorithm>
#include <cmath>

#include "tests/support/XWindows.h"

namespace vistrel::testbed {
namespace {

constexpr Rgb liveColour{77, 217, 115};
constexpr Rgb staleColour{250, 179, 51};

// Scaling may round a uniform colour by a little.
constexpr int tolerance = 6;

}  // namespace

Rect PanelOnScreen::computedArea(Rect source, Point origin) {
  const double width = std::min(std::max(source.width * 0.34, 220.0), 520.0);
  const double height = width * source.height / source.width + titleBarHeight;
  return {origin.x, origin.y, static_cast<int>(std::lround(width)),
          static_cast<int>(std::lround(height))};
}

bool PanelOnScreen::isOnScreen() const { return isViewable(*connection_, window_); }

Rect PanelOnScreen::area() const { return areaOf(*connection_, window_).value_or(Rect{}); }

int PanelOnScreen::pixels(double points) const {
  return static_cast<int>(std::lround(points * scale_));
}

Point PanelOnScreen::titleBar() const {
  const Rect panel = area();
  return {panel.x + panel.width / 2, panel.y + pixels(titleBarHeight) / 2};
}

Point PanelOnScreen::closeButton() const {
  const Rect panel = area();
  return {panel.x + panel.width - pixels(15), panel.y + pixels(titleBarHeight) / 2};
}

Point PanelOnScreen::grip() const {
  const Rect panel = area();
  return {panel.x + panel.width - pixels(8), panel.y + panel.height - pixels(8)};
}

Rect PanelOnScreen::contents() const {
  const Rect panel = area();
  const int titleBar = pixels(titleBarHeight);
  return {panel.x, panel.y + titleBar, panel.width, panel.height - titleBar};
}

Dot PanelOnScreen::dot() const {
  const Rect panel = area();
  const Rgb colour = screen_->pixel({panel.x + pixels(34), panel.y + pixels(titleBarHeight) / 2});
  if (similar(colour, liveColour, tolerance)) {
    return Dot::live;
  }
  if (similar(colour, staleColour, tolerance)) {
    return Dot::stale;
  }
  const bool isReddish = colour.red > 200 && colour.green < 110 && colour.blue < 110;
  return isReddish ? Dot::failed : Dot::other;
}

Quadrants PanelOnScreen::picture() const {
  const Rect picture = contents();
  return {screen_->pixel(picture.at(0.25, 0.25)), screen_->pixel(picture.at(0.75, 0.25)),
          screen_->pixel(picture.at(0.25, 0.75)), screen_->pixel(picture.at(0.75, 0.75))};
}

bool PanelOnScreen::shows(const Quadrants& expected) const {
  const Quadrants shown = picture();
  return similar(shown.topLeft, expected.topLeft, tolerance) &&
         similar(shown.topRight, expected.topRight, tolerance) &&
         similar(shown.bottomLeft, expected.bottomLeft, tolerance) &&
         similar(shown.bottomRight, expected.bottomRight, tolerance);
}

}  // namespace vistrel::testbed
