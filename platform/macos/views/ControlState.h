#pragma once

#import <AppKit/AppKit.h>

#include "platform/Controls.h"

namespace vistrel::platform::macos {

/// A new AppKit view of the kind that shows `view`.
NSView* makeViewPeer(View& view);

/// Gives `realized`, which `makeViewPeer` made for `view`, all of the view's looks: texts, colours,
/// tooltip, whether it has a layer. Frame and subviews are not among them.
void applyAppearance(const View& view, NSView* realized);

/// The size that AppKit gives a control that looks like `control`; zero for none.
Size intrinsicContentSize(const Control& control);

}  // namespace vistrel::platform::macos
