#pragma once

#import <QuartzCore/QuartzCore.h>

#include "platform/Layer.h"

namespace vistrel::platform::macos {

/// Gives `target` everything that `layer` says, contents included. Main thread, while the view's
/// appearance is the current one: colours of the theme are resolved here.
void applyLayerState(const Layer& layer, CALayer* target);

/// Gives `target` the picture of `layer` alone.
void applyLayerContents(const Layer& layer, CALayer* target);

}  // namespace vistrel::platform::macos
