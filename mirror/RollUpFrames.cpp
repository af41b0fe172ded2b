#include "mirror/RollUpFrames.h"

#include "mirror/PanelLayout.h"

namespace vistrel {

using platform::rect;
using platform::Rect;

namespace {

Rect withHeightKeepingTop(const Rect& frame, double height) {
  return rect(frame.minX(), frame.minY() + (frame.height() - height), frame.width(), height);
}

}  // namespace

Rect rolledUpFrame(const Rect& frame) { return withHeightKeepingTop(frame, panelTitleBarHeight); }

Rect rolledDownFrame(const Rect& frame, const std::optional<Rect>& beforeRollUp, double aspect) {
  const double height =
      beforeRollUp ? beforeRollUp->height() : frame.width() / aspect + panelTitleBarHeight;
  return withHeightKeepingTop(frame, height);
}

}  // namespace vistrel
