#include "mirror/ScaledFrame.h"

#include <algorithm>

#include "mirror/PanelLayout.h"

namespace vistrel {

platform::Rect scaledFrame(const platform::Rect& frame, platform::Size sourceSize, double aspect,
                           double factor, double minWidth) {
  const double width = std::max(factor * sourceSize.width, minWidth);
  const double height = width / aspect + panelTitleBarHeight;
  return platform::rect(frame.minX(), frame.minY() + (frame.height() - height), width, height);
}

}  // namespace vistrel
