#include "mirror/PanelLayout.h"

#include <algorithm>

namespace vistrel {

using platform::Point;
using platform::rect;
using platform::Rect;
using platform::Size;

namespace {

constexpr double widthPerSourceWidth = 0.34;
constexpr double minInitialWidth = 220;
constexpr double maxInitialWidth = 520;

constexpr double screenMargin = 32;
constexpr double cascadeStep = 28;
constexpr double bottomMargin = 24;

}  // namespace

Size usableSourceSize(Size source) {
  return {std::max(source.width, 1.0), std::max(source.height, 1.0)};
}

Size initialPanelSize(Size usableSource) {
  const double aspect = usableSource.width / usableSource.height;
  const double width = std::min(std::max(usableSource.width * widthPerSourceWidth, minInitialWidth),
                                maxInitialWidth);
  return {width, width / aspect + panelTitleBarHeight};
}

Point initialPanelOrigin(const Rect& visibleArea, double panelHeight, int cascade) {
  const double step = cascade * cascadeStep;
  const double y = visibleArea.maxY() - panelHeight - screenMargin - step;
  return {visibleArea.minX() + screenMargin + step, std::max(y, visibleArea.minY() + bottomMargin)};
}

PanelLayout panelLayout(Size card) {
  const double w = card.width;
  const double h = card.height;
  const double pictureHeight = h - panelTitleBarHeight;
  return {
      .titleBar = rect(0, 0, w, panelTitleBarHeight),
      .brandIcon = rect(8, 5, 17, 16),
      .liveDot = rect(30, 9, 8, 8),
      .closeButton = rect(w - 24, 4, 18, 18),
      .titleLabel = rect(44, 5, std::max(w - 44 - 28, 10.0), 16),
      .content = rect(0, panelTitleBarHeight, w, std::max(pictureHeight, 0.0)),
      .statusLabel =
          rect(12, pictureHeight * 0.5 + panelTitleBarHeight - 24, std::max(w - 24, 10.0), 48),
      .grip = rect(w - 16, h - 16, 16, 16),
  };
}

}  // namespace vistrel
