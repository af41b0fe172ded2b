#pragma once

#include <memory>
#include <vector>

#include "platform/Geometry.h"

namespace vistrel::platform {

class View;

enum class LayoutAttribute { leading, trailing, top, bottom, centerX, centerY };

/// `first`'s edge = `second`'s edge + `constant` points, with y growing downwards as in layout
/// anchors: a negative constant pulls the first edge towards the leading or top side. Views are
/// held by the tree, so the constraint holds them weakly.
struct LayoutConstraint {
  std::weak_ptr<View> first;
  LayoutAttribute firstAttribute = LayoutAttribute::leading;
  std::weak_ptr<View> second;
  LayoutAttribute secondAttribute = LayoutAttribute::leading;
  double constant = 0;
};

/// Sets the frames of `container`'s subviews that take part in `constraints`, given the container's
/// bounds. An axis that the constraints leave open takes the view's intrinsic size; a position that
/// they leave open is 0. Constraints that contradict earlier ones are ignored. Main thread.
void solveConstraints(View& container, const std::vector<LayoutConstraint>& constraints);

}  // namespace vistrel::platform
