#include "tests/desktop/PanelShot.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <sstream>

#include "tests/desktop/PanelOnScreen.h"

namespace vistrel::testbed {
namespace {

constexpr int titleBar = PanelOnScreen::titleBarHeight;
constexpr int corner = 12;  // a little more than its radius
constexpr int gripSide = 16;
constexpr int tolerance = 10;

bool isBackdrop(Rgb colour) {
  return colour.green <= 6 && colour.red >= 40 && std::abs(colour.red - colour.blue) <= 6;
}

Rect areaOfPanel(const Picture& shot) {
  int left = shot.width(), top = shot.height(), right = 0, bottom = 0;
  for (int y = 0; y < shot.height(); ++y) {
    for (int x = 0; x < shot.width(); ++x) {
      if (isBackdrop(shot.at(x, y))) {
        continue;
      }
      left = std::min(left, x);
      top = std::min(top, y);
      right = std::max(right, x + 1);
      bottom = std::max(bottom, y + 1);
    }
  }
  return {left, top, std::max(right - left, 0), std::max(bottom - top, 0)};
}

/// White at the border's alpha over `colour`.
Rgb bordered(Rgb colour) {
  const auto blend = [](std::uint8_t channel) {
    return static_cast<std::uint8_t>(channel * 0.82 + 255 * 0.18);
  };
  return {blend(colour.red), blend(colour.green), blend(colour.blue)};
}

/// The panel of some size within a shot, perhaps cut to the area where it is seen; coordinates are
/// the panel's own.
class Judge {
 public:
  Judge(const Picture& shot, Rect seen, Size size) : shot_(shot), seen_(seen), size_(size) {
    const int room = size.height - titleBar;
    const int width = std::min(size.width, room * 2);
    picture_ = {(size.width - width) / 2, titleBar + (room - width / 2) / 2, width, width / 2};
  }

  std::string faults() {
    judgeTitleBar();
    judgeBorder();
    judgeContents();
    if (size_.height > titleBar && isSeen(size_.width - 1, size_.height - 1)) {
      judgeGrip();
    }
    if (faults_.str().empty()) {
      return {};
    }
    std::ostringstream text;
    text << "panel of " << size_.width << " x " << size_.height << " seen as " << seen_ << ':'
         << faults_.str();
    return text.str();
  }

 private:
  Rgb at(int x, int y) const { return shot_.at(seen_.x + x, seen_.y + y); }
  bool isSeen(int x, int y) const { return x < seen_.width && y < seen_.height; }
  static bool isInCorner(Size size, int x, int y) {
    return (x < corner || x >= size.width - corner) && (y < corner || y >= size.height - corner);
  }
  /// Seen, and not where the round corners are.
  bool isJudged(int x, int y) const {
    return isSeen(x, y) && !isInCorner(size_, x, y) &&
           !isInCorner({seen_.width, seen_.height}, x, y);
  }

  void complain(const char* what, int x, int y) {
    faults_ << ' ' << what << " at " << x << ", " << y << " is " << at(x, y) << ';';
  }

  /// What is expected under border and grip, and nothing where the scaled picture may be one or the
  /// other.
  std::optional<Rgb> contentsAt(int x, int y) const {
    constexpr int vague = 2;
    if (y < titleBar) {
      return black;
    }
    const auto isNear = [](int a, int b) { return std::abs(2 * a + 1 - 2 * b) <= 2 * vague; };
    const Point middle = picture_.centre();
    const int right = picture_.x + picture_.width;
    const int bottom = picture_.y + picture_.height;
    const bool isBeside = x < picture_.x || x >= right || y < picture_.y || y >= bottom;
    const bool fillsWidth = picture_.width >= size_.width - 1;
    if (fillsWidth ? (isNear(y, picture_.y) || isNear(y, bottom))
                   : (isNear(x, picture_.x) || isNear(x, right))) {
      return std::nullopt;
    }
    if (isBeside) {
      return black;
    }
    if (isNear(x, middle.x) || isNear(y, middle.y)) {
      return std::nullopt;
    }
    const bool isLeft = x < middle.x;
    if (y < middle.y) {
      return isLeft ? fourColours.topLeft : fourColours.topRight;
    }
    return isLeft ? fourColours.bottomLeft : fourColours.bottomRight;
  }

  void judgeTitleBar() {
    for (int y = 2; y < titleBar - 1; ++y) {
      for (int x = size_.width - 27; x < size_.width - 24; ++x) {
        if (isJudged(x, y) && !similar(at(x, y), black, tolerance)) {
          return complain("title bar", x, y);
        }
      }
    }
    if (isSeen(size_.width - 1, 0) && brightest({size_.width - 24, 4, 18, 18}) < 100) {
      complain("close button", size_.width - 15, titleBar / 2);
    }
    if (brightest({8, 5, 17, 16}) < 100) {
      complain("icon", 16, titleBar / 2);
    }
    if (brightest({33, 12, 2, 2}) < 100) {
      complain("dot", 34, titleBar / 2);
    }
  }

  int brightest(Rect part) const {
    int most = 0;
    for (int y = part.y; y < part.y + part.height; ++y) {
      for (int x = part.x; x < part.x + part.width; ++x) {
        const Rgb colour = at(x, y);
        most = std::max<int>({most, colour.red, colour.green, colour.blue});
      }
    }
    return most;
  }

  void judgeBorder() {
    for (int x = 0; x < size_.width; ++x) {
      judgeBorder(x, 0);
      judgeBorder(x, size_.height - 1);
    }
    for (int y = 0; y < size_.height; ++y) {
      judgeBorder(0, y);
      judgeBorder(size_.width - 1, y);
    }
  }
  void judgeBorder(int x, int y) {
    const auto expected = contentsAt(x, y);
    if (isBorderWhole_ && isJudged(x, y) && expected &&
        !similar(at(x, y), bordered(*expected), tolerance)) {
      isBorderWhole_ = false;
      complain("border", x, y);
    }
  }

  void judgeContents() {
    for (int y = titleBar + 1; y < size_.height - 1; ++y) {
      for (int x = 1; x < size_.width - 1; ++x) {
        const bool isGrip = x >= size_.width - gripSide && y >= size_.height - gripSide;
        const auto expected = contentsAt(x, y);
        if (isGrip || !isJudged(x, y) || !expected) {
          continue;
        }
        if (!similar(at(x, y), *expected, tolerance)) {
          return complain("contents", x, y);
        }
      }
    }
  }

  /// Its strokes lie on the bar or on the yellow quarter, and are brighter in blue than either.
  void judgeGrip() {
    int strokes = 0;
    for (int y = size_.height - gripSide; y < size_.height - 2; ++y) {
      for (int x = size_.width - gripSide; x < size_.width - 2; ++x) {
        const auto under = contentsAt(x, y);
        strokes += under && at(x, y).blue > under->blue + 25 ? 1 : 0;
      }
    }
    if (strokes < 4) {
      complain("grip", size_.width - 8, size_.height - 8);
    }
  }

  const Picture& shot_;
  const Rect seen_;
  const Size size_;
  Rect picture_;
  bool isBorderWhole_ = true;
  std::ostringstream faults_;
};

}  // namespace

std::string faultsOf(const Picture& shot, const std::vector<Size>& cutFrom) {
  const Rect area = areaOfPanel(shot);
  if (area.width < 3 * corner || area.height < titleBar) {
    std::ostringstream text;
    text << "no panel but " << area;
    return text.str();
  }
  const auto isCut = [&](Size size) {
    return size.width >= area.width && size.height >= area.height &&
           Judge(shot, area, size).faults().empty();
  };
  std::string faults = Judge(shot, area, {area.width, area.height}).faults();
  if (!faults.empty() && std::ranges::any_of(cutFrom, isCut)) {
    return {};
  }
  return faults;
}

}  // namespace vistrel::testbed
