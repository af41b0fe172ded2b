#include "tests/desktop/PickerOnScreen.h"

#include <algorithm>
#include <cmath>

#include "tests/support/XWindows.h"

namespace vistrel::testbed {
namespace {

// The inside of the list, from the picker's constraints: below the heading and the status line,
// above the buttons, free of the border and the scroller. The first row's text begins just below.
constexpr int listLeft = 24;
constexpr int listRightMargin = 44;
constexpr int listTop = PickerOnScreen::menuBarHeight + 66;
constexpr int listBottomMargin = 62;
// Lines without text between a letter and its accent.
constexpr int largestGapInText = 3;
constexpr int buttonMiddle = 14 + 12;

bool isUniform(const Picture& picture, int y) {
  for (int x = 1; x < picture.width(); ++x) {
    if (picture.at(x, y) != picture.at(0, y)) {
      return false;
    }
  }
  return true;
}

}  // namespace

bool PickerOnScreen::isOnScreen() const { return isViewable(*connection_, window_); }

Rect PickerOnScreen::area() const { return areaOf(*connection_, window_).value_or(Rect{}); }

int PickerOnScreen::pixels(int points) const {
  return static_cast<int>(std::lround(points * scale_));
}

Rect PickerOnScreen::list() const {
  const Rect window = area();
  return {window.x + pixels(listLeft), window.y + pixels(listTop),
          window.width - pixels(listLeft + listRightMargin),
          window.height - pixels(listTop + listBottomMargin)};
}

/// Whether the picker is painted yet: its list stands out against the margin beside it, which has
/// one colour; what lies under the window does not do so just there.
bool PickerOnScreen::showsList() const {
  const Rect list = this->list();
  const Picture margin = screen_->read({list.x - pixels(listLeft / 2), list.y, 1, list.height});
  for (int y = 1; y < margin.height(); ++y) {
    if (margin.at(0, y) != margin.at(0, 0)) {
      return false;
    }
  }
  return screen_->pixel({list.x, list.y + list.height / 2}) != margin.at(0, 0);
}

std::vector<Rect> PickerOnScreen::rows() const {
  const Rect window = area();
  const Rect list = this->list();
  if (list.width <= 0 || list.height <= 0 || !showsList()) {
    return {};
  }
  const Picture picture = screen_->read(list);
  std::vector<Rect> rows;
  for (int y = 0; y < picture.height(); ++y) {
    if (isUniform(picture, y)) {
      continue;
    }
    const int top = list.y + y;
    if (rows.empty() || top - (rows.back().y + rows.back().height) > pixels(largestGapInText)) {
      rows.push_back({list.x, top, list.width, 0});
    }
    rows.back().height = top + 1 - rows.back().y;
  }
  // While the manager still places the window, what was read may not be where it is now.
  return area() == window ? rows : std::vector<Rect>{};
}

bool PickerOnScreen::isMarked(Rect row) const {
  const Picture picture = screen_->read(row);
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      const Rgb colour = picture.at(x, y);
      if (colour.green > colour.red + 60 && colour.green > colour.blue + 40) {
        return true;
      }
    }
  }
  return false;
}

Point PickerOnScreen::refreshButton() const {
  const Rect window = area();
  return {window.x + pixels(18 + 20), window.y + window.height - pixels(buttonMiddle)};
}

Point PickerOnScreen::mirrorButton() const {
  const Rect window = area();
  return {window.x + window.width - pixels(18 + 20),
          window.y + window.height - pixels(buttonMiddle)};
}

}  // namespace vistrel::testbed
